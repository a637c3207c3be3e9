#include "ei4make/dicom_structure.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "ei4make/picture.h"

namespace ei4::tools {

namespace {

using Bytes = std::span<const unsigned char>;

constexpr std::size_t kMetaOffset = 132;
constexpr std::uint32_t kUndefined = 0xFFFFFFFF;

constexpr std::uint32_t kTransferSyntax = 0x00020010;
constexpr std::uint32_t kFloatPixels = 0x7FE00008;
constexpr std::uint32_t kDoublePixels = 0x7FE00009;
constexpr std::uint32_t kPixels = 0x7FE00010;
constexpr std::uint32_t kItem = 0xFFFEE000;
constexpr std::uint32_t kItemEnd = 0xFFFEE00D;
constexpr std::uint32_t kSequenceEnd = 0xFFFEE0DD;

bool isOneOf(std::string_view vr, std::string_view list) {
  for (std::size_t i = 0; i + 1 < list.size(); i += 3) {
    if (list.substr(i, 2) == vr) return true;
  }
  return false;
}

bool hasShortLength(std::string_view vr) {
  return isOneOf(vr, "AE AS AT CS DA DS DT FD FL IS LO LT PN SH SL SS ST TM UI UL US");
}
bool hasLongLength(std::string_view vr) { return isOneOf(vr, "OB OD OF OL OV OW SQ SV UC UN UR UT UV"); }

struct Element {
  std::uint32_t tag = 0;
  std::string_view vr;  ///< empty when it is not written
  std::uint32_t length = 0;
  std::size_t value = 0;  ///< where the value begins
};

[[noreturn]] void refuse(const Element& element, const char* what) {
  char name[16];
  std::snprintf(name, sizeof name, "(%04x,%04x)", element.tag >> 16, element.tag & 0xFFFFU);
  throw PictureError(std::string("the DICOM file is damaged: element ") + name + ' ' + what);
}

/// Reads element after element. Every position is one within the bytes.
class Walker {
 public:
  Walker(Bytes bytes, DicomEncoding encoding) : bytes_(bytes), encoding_(encoding) {}

  /// The element at a position, whose value lies before `end` unless its length is undefined.
  Element elementAt(std::size_t at, std::size_t end) const {
    Element element;
    if (end - at < 8) throw PictureError("the DICOM file is damaged: it ends within an element");
    element.tag = number(at, 2) << 16 | number(at + 2, 2);
    element.value = at + 8;
    if (!encoding_.isExplicit || element.tag >> 16 == kItem >> 16) {
      element.length = number(at + 4, 4);
    } else {
      element.vr = {reinterpret_cast<const char*>(&bytes_[at + 4]), 2};
      if (hasShortLength(element.vr)) {
        element.length = number(at + 6, 2);
      } else if (!hasLongLength(element.vr)) {
        refuse(element, "has an unknown value representation");
      } else {
        if (end - at < 12) refuse(element, "is cut");
        element.length = number(at + 8, 4);
        element.value = at + 12;
      }
    }
    if (element.length == kUndefined) return element;
    if (element.length > end - element.value) refuse(element, "is longer than what it is in");
    if (element.length % 2 != 0) refuse(element, "has an odd length");
    return element;
  }

  /// Behind the value of this element, which begins before `end`.
  std::size_t skip(const Element& element, std::size_t end, int depth) const {
    const bool isUndefined = element.length == kUndefined;
    const std::size_t valueEnd = isUndefined ? end : element.value + element.length;
    if (!isUndefined && !isSequence(element)) return valueEnd;
    if (depth >= kMostNesting) refuse(element, "nests too deep");
    if (isUndefined && (element.vr == "OB" || element.vr == "OW")) {
      refuse(element, "has fragments, which only pixels may have");
    }
    if (isUndefined && !element.vr.empty() && element.vr != "SQ" && element.vr != "UN") {
      refuse(element, "has no length");
    }
    // What is unknown and has no length is written without value representations.
    const Walker inner(bytes_, element.vr == "UN" ? DicomEncoding{false, false} : encoding_);
    return inner.skipItems(element.value, valueEnd, isUndefined, depth + 1);
  }

  /// Behind the fragments that begin at a position.
  std::size_t skipFragments(std::size_t at, std::size_t end) const {
    for (;;) {
      const Element item = elementAt(at, end);
      if (item.tag == kSequenceEnd && item.length == 0) return item.value;
      if (item.tag != kItem || item.length == kUndefined) refuse(item, "stands among fragments");
      at = item.value + item.length;
    }
  }

 private:
  std::uint32_t number(std::size_t at, std::size_t count) const {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
      value = value << 8 | bytes_[encoding_.isBigEndian ? at + i : at + count - 1 - i];
    }
    return value;
  }

  // Without value representations a sequence shows by its first item only.
  bool isSequence(const Element& element) const {
    if (!element.vr.empty()) return element.vr == "SQ";
    return element.tag != kPixels && element.length >= 8 &&
           (number(element.value, 2) << 16 | number(element.value + 2, 2)) == kItem;
  }

  std::size_t skipItems(std::size_t at, std::size_t end, bool isUndefined, int depth) const {
    while (isUndefined || at < end) {
      const Element item = elementAt(at, end);
      if (isUndefined && item.tag == kSequenceEnd && item.length == 0) return item.value;
      if (item.tag != kItem) refuse(item, "stands where an item should");
      const bool isOpen = item.length == kUndefined;
      at = skipElements(item.value, isOpen ? end : item.value + item.length, isOpen, depth);
    }
    return at;
  }

  std::size_t skipElements(std::size_t at, std::size_t end, bool isOpen, int depth) const {
    while (isOpen || at < end) {
      const Element element = elementAt(at, end);
      if (isOpen && element.tag == kItemEnd && element.length == 0) return element.value;
      if (element.tag >> 16 == kItem >> 16) refuse(element, "stands where it cannot");
      at = element.tag == kPixels && element.length == kUndefined ? skipFragments(element.value, end)
                                                                  : skip(element, end, depth);
    }
    return at;
  }

  Bytes bytes_;
  DicomEncoding encoding_;
};

}  // namespace

DicomPrologue readPrologue(Bytes file) {
  DicomPrologue prologue;
  const Walker walker(file, {});
  std::size_t at = std::min(kMetaOffset, file.size());
  while (file.size() - at >= 8 && file[at] == 2 && file[at + 1] == 0) {
    const Element element = walker.elementAt(at, file.size());
    if (element.tag == kTransferSyntax && element.length != kUndefined) {
      const auto* text = reinterpret_cast<const char*>(file.data()) + element.value;
      std::string& uid = prologue.transferSyntax;
      uid.assign(text, element.length);
      while (!uid.empty() && (uid.back() == ' ' || uid.back() == '\0')) uid.pop_back();
    }
    at = walker.skip(element, file.size(), 0);
  }
  prologue.dataSetOffset = at;
  const std::string& uid = prologue.transferSyntax;
  if (uid.empty() || uid.size() > 64 || uid.find_first_not_of("0123456789.") != std::string::npos) {
    throw PictureError("the DICOM file states no transfer syntax");
  }
  return prologue;
}

DicomOutline outlineOf(Bytes dataSet, DicomEncoding encoding) {
  const Walker walker(dataSet, encoding);
  for (std::size_t at = 0; at < dataSet.size();) {
    const Element element = walker.elementAt(at, dataSet.size());
    if (element.tag == kFloatPixels || element.tag == kDoublePixels) {
      throw PictureError("the DICOM file has floating point pixels");
    }
    if (element.tag >> 16 == kItem >> 16) refuse(element, "stands where it cannot");
    if (element.tag == kPixels) {
      DicomOutline outline;
      outline.pixelElement = at;
      outline.pixelValue = element.value;
      outline.hasFragments = element.length == kUndefined;
      outline.isWordValue = element.vr != "OB";
      outline.pixelValueEnd = outline.hasFragments ? walker.skipFragments(element.value, dataSet.size())
                                                   : element.value + element.length;
      return outline;
    }
    at = walker.skip(element, dataSet.size(), 0);
  }
  throw PictureError("the DICOM file has no pixel data");
}

}  // namespace ei4::tools
