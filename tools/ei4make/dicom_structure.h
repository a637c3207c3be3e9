// The outline of a DICOM file, looked over before anything else reads it: afterwards every length is one that the file
// can hold, and sequences nest only so deep.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace ei4::tools {

/// How the elements of a data set are written.
struct DicomEncoding {
  bool isExplicit = true;  ///< with the value representation of each
  bool isBigEndian = false;
};

/// What stands in front of the data set.
struct DicomPrologue {
  std::string transferSyntax;     ///< the UID, without padding
  std::size_t dataSetOffset = 0;  ///< bytes from the file's start
};

/// The parts of a data set, in bytes from its start.
struct DicomOutline {
  std::size_t pixelElement =
      0;  ///< where the element with the pixels begins: all others that count stand in front
  std::size_t pixelValue = 0;     ///< where its value begins
  std::size_t pixelValueEnd = 0;  ///< behind the value
  bool hasFragments = false;      ///< the value is a sequence of fragments
  bool isWordValue = false;       ///< the value consists of 16-bit words, in the data set's byte order
};

/// Sequences within sequences that are followed.
inline constexpr int kMostNesting = 32;

/// Reads the meta information of a file that has the mark "DICM". Throws PictureError when it is damaged or states no
/// transfer syntax.
DicomPrologue readPrologue(std::span<const unsigned char> file);

/// Walks over a data set up to the end of its pixel data; what follows is not looked at. Throws PictureError when it has
/// none, or other than integer ones; for lengths that are odd or lead outside of what they are in; for unknown value
/// representations; for deeper nesting.
DicomOutline outlineOf(std::span<const unsigned char> dataSet, DicomEncoding encoding);

}  // namespace ei4::tools
