// DICOM files that are cut, damaged or lie: each is refused in one line, or gives a picture.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <random>
#include <string>

#include "ei4make/dicom_picture.h"
#include "tools/ei4make_dicom_builder.h"

namespace {

using namespace ei4::tools;
using ei4::test::Bytes;
using ei4::test::DicomBuilder;

/// Whether it is taken. Nothing but PictureError may come out.
bool isTaken(const Bytes& file, std::optional<int> frame = {}) {
  try {
    const Source source = readDicom(file, {frame, false});
    const Picture& picture = source.picture;
    EXPECT_EQ(picture.pixels.size(), static_cast<std::size_t>(picture.width) *
                                         static_cast<std::size_t>(picture.height) *
                                         static_cast<std::size_t>(picture.bytesPerPixel));
    return true;
  } catch (const PictureError& error) {
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << error.what();
    return false;
  }
}

DicomBuilder small() {
  DicomBuilder builder(6, 4, 16, 12);
  DcmItem* item = nullptr;
  builder.items().findOrCreateSequenceItem(DCM_FrameVOILUTSequence, item, -2);
  item->putAndInsertString(DCM_WindowWidth, "9");
  return builder.words(
      {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24});
}

class HostileDicom : public testing::TestWithParam<E_TransferSyntax> {};

INSTANTIATE_TEST_SUITE_P(Each, HostileDicom,
                         testing::Values(EXS_LittleEndianImplicit, EXS_LittleEndianExplicit,
                                         EXS_BigEndianExplicit, EXS_DeflatedLittleEndianExplicit,
                                         EXS_RLELossless, EXS_JPEGProcess14SV1, EXS_JPEGLSLossless));

TEST_P(HostileDicom, IsRefusedWhereverItIsCut) {
  const Bytes whole = small().file(GetParam());
  ASSERT_TRUE(isTaken(whole));
  for (std::size_t length = 132; length < whole.size(); ++length) {
    EXPECT_FALSE(isTaken(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))))
        << length;
  }
}

// Four bytes each as a length that leads far out, in either order; what they are does not matter.
TEST_P(HostileDicom, EndsWellWhateverItsLengthsSay) {
  const Bytes whole = small().file(GetParam());
  for (std::size_t at = 132; at + 4 <= whole.size(); at += 2) {
    for (const int high : {0x7F, 0xFF}) {
      Bytes lying = whole;
      for (std::size_t i = 0; i < 4; ++i) lying[at + i] = 0xFE;
      lying[at + (GetParam() == EXS_BigEndianExplicit ? 0 : 3)] = static_cast<unsigned char>(high);
      isTaken(lying);
      for (std::size_t i = 0; i < 4; ++i) lying[at + i] = 0xFF;
      isTaken(lying);
    }
  }
}

TEST_P(HostileDicom, EndsWellWhateverBytesAreWrong) {
  const Bytes whole = small().file(GetParam());
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  for (int round = 0; round < 400; ++round) {
    Bytes damaged = whole;
    for (int i = 0; i <= round % 4; ++i) {
      damaged[132 + random() % (damaged.size() - 132)] = static_cast<unsigned char>(random());
    }
    isTaken(damaged);
    isTaken(damaged, 2);
  }
}

// Here the bytes in front of the frame and its own together are 2^64 and 512.
TEST(HostileFrames, AreNotFoundByAProductThatWraps) {
  const Bytes file = DicomBuilder(60104, 65362, 8, 8)
                         .colour("RGB")
                         .text(DCM_NumberOfFrames, "1565199712")
                         .bytes(Bytes(1000))
                         .file();
  EXPECT_FALSE(isTaken(file, 1565199712));
  EXPECT_FALSE(isTaken(file, 1));
}

long peakKibibytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// Sides are taken from the attributes and from the coded data; neither may make the reader take memory by itself.
TEST_P(HostileDicom, TakesNoMemoryForSidesThatItOnlyClaims) {
  const long before = peakKibibytes();
  Bytes file;
  if (DcmXfer(GetParam()).isEncapsulated()) {
    file = small().file(GetParam());
    Bytes large = file;
    for (const unsigned char element : Bytes{0x10, 0x11}) {  // rows and columns
      const Bytes head = {0x28, 0, element, 0, 'U', 'S', 2, 0};
      const auto at = std::search(large.begin(), large.end(), head.begin(), head.end());
      ASSERT_NE(at, large.end());
      std::fill(at + 8, at + 10, static_cast<unsigned char>(0xFF));
    }
    EXPECT_FALSE(isTaken(large));
  } else {
    EXPECT_FALSE(isTaken(small().number(DCM_Rows, 65535).number(DCM_Columns, 65535).file(GetParam())));
  }
  for (std::size_t at = 132; at + 9 < file.size(); ++at) {  // the frame header of a JPEG stream
    const bool isFrame = file[at] == 0xFF && (file[at + 1] == 0xC3 || file[at + 1] == 0xF7);
    if (!isFrame || file[at + 2] != 0) continue;
    for (std::size_t i = 5; i < 9; ++i) file[at + i] = 0xFF;
    EXPECT_FALSE(isTaken(file));
  }
  EXPECT_LT(peakKibibytes() - before, 100 * 1024);
}

}  // namespace
