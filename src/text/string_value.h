// CStringValue: single values written one behind another into a text, and read back from it.
#pragma once

#include "types/cstring.h"

/// Readers take a position in a terminated text, never null unless said otherwise, and move it behind what
/// they read. They return true, or false when the value is not there; then the position is where the
/// reader met the fault, and the value as it was, unless said otherwise. A call costs what its value is long,
/// however long the text is.
///
/// Writers append to a string, or write at a position and move it behind what they wrote; there a zero byte
/// follows, which is not counted in any SavedLength. The room is the caller's business, the text never its
/// own destination.
class CStringValue {
 public:
  CStringValue() = delete;

  /// An optional "-", decimal digits and one space. Digits beyond an int wrap. Quirk int-without-its-space:
  /// when the space is missing, the value holds the digits already, without their sign.
  static bool ReadInt(const char*& text, int& value);
  static void WriteInt(CString& out, int value);
  static void WriteInt(char*& out, int value);

  /// As ReadInt, without a sign and in 64 bits.
  static bool ReadDWORD(const char*& text, unsigned long& value);
  static void WriteDWORD(CString& out, unsigned long value);

  static bool ReadChar(const char*& text, char& value);  ///< any character but the terminator
  static void WriteChar(CString& out, char value);       ///< the zero byte changes nothing
  static void WriteChar(char*& out, char value);

  /// A length as ReadInt reads it, and so many characters of any kind.
  static bool ReadString(const char*& text, CString& value);
  static void WriteString(CString& out, const CString& value);
  static void WriteString(char*& out, const CString& value);

  /// The characters up to the next space or the end, at least one; empty when there are none. Quirk
  /// word-steps-over-its-end: the position moves one character further, whatever that is. Behind a word at
  /// the end of the text it lies past the terminator, and must not be read from.
  static bool ReadWord(const char*& text, CString& value);
  static void WriteWord(char*& out, const CString& word);  ///< the word and a space
  /// Quirk word-loses-32: appends what the word has from its 33rd character on, and no space.
  static void WriteWord(CString& out, const CString& word);

  /// The characters up to the end or the next line feed, behind which the position moves. Fails, and gives
  /// an empty line, at the end of the text and for a null position.
  static bool ReadLine(const char*& text, CString& value);

  static bool ReadBOOL(const char*& text, int& value);  ///< "y" or "n"; the position stays on any other
  static void WriteBOOL(CString& out, int value);

  /// A number as scanf's "%lf" takes it, behind white space if there is some. Quirk
  /// double-skips-from-the-start: the position moves behind the first space at or after its start, even when
  /// that one is in front of the number; without a space the reader fails at the end of the text, with the
  /// value stored. White space in front is looked through by each call again.
  static bool ReadDouble(const char*& text, double& value);
  static void WriteDouble(CString& out, double value);  ///< "%f" and a space

  /// How many characters the writer of such a value adds.
  static long SavedLength(int value);
  static long SavedLength(char value);
  static long SavedLength(const CString& value);
  static long SavedLengthOfWord(const CString& word);

  static bool IsEmpty(const char* text);  ///< at the end of the text
};
