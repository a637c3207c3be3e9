// CString: a zero-terminated byte string of its own on the heap.
#pragma once

/// Holds no length: it is always that of the text up to its first zero byte. Any change may move the buffer,
/// so pointers handed out are good until the next one. Appending copies the whole text; code that builds long
/// texts piece by piece collects them elsewhere first.
class CString {
 public:
  CString();                         ///< empty
  CString(const char* text);         ///< a copy; never null
  CString(const char* text, int n);  ///< at most the first n bytes; empty for null or n <= 0
  CString(const CString& other);
  CString& operator=(const CString& other);
  /// Exchanges the two texts. There is no move construction: it would have to allocate the other one's new text.
  CString& operator=(CString&& other) noexcept;
  ~CString();

  void Init();  ///< becomes empty, as after construction
  void Empty();

  operator const char*() const { return m_pText; }
  char* GetBuffer() { return m_pText; }
  char* LockBuffer() { return m_pText; }
  void UnlockBuffer() {}
  void ReleaseBuffer() {}
  /// A buffer of exactly n bytes and a terminator: the text itself when n is its length; otherwise its first
  /// n bytes, padded with zeros. A negative n counts as 0.
  char* GetBuffer(int n);

  int GetLength() const;
  int Compare(const char* text) const;  ///< as strcmp; never null
  /// It would compare addresses: use Compare.
  friend bool operator==(const CString&, const CString&) = delete;

  CString& operator+=(const char* text);  ///< null changes nothing; the text may be this one's own
  CString& operator+=(char character);    ///< the zero byte changes nothing

  int Replace(char old, char replacement);  ///< how many were replaced; 0 for equal bytes or an old zero byte
  void TrimLeft();                          ///< blanks (0x20) only, no other white space
  void TrimRight();

  /// As printf. The result is cut to 3999 bytes, and empty where printf fails. An argument may be this
  /// string's own text.
  [[gnu::format(printf, 2, 3)]] void Format(const char* format, ...);

  /// Puts a backslash before each double quote and each backslash.
  void EncodeBuffer_();

 private:
  void Adopt(char* buffer);  ///< frees the old buffer

  char* m_pText;  ///< array new; never null
};
