#include "ei4make/jpeg_header.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using ei4::tools::readJpegHeader;
using Bytes = std::vector<unsigned char>;

const Bytes kStart = {0xFF, 0xD8};
const Bytes kComment = {0xFF, 0xFE, 0, 4, 0xFF, 0xC0};  // with what looks like a frame header
const Bytes kTable = {0xFF, 0xC4, 0, 3, 1};
const Bytes kFrame = {0xFF, 0xC3, 0, 11, 12, 0x01, 0x02, 0x03, 0x04, 1, 0, 0x11, 0};
const Bytes kScan = {0xFF, 0xDA, 0, 2, 7, 0xFF, 0, 0xDA};

Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST(ReadJpegHeader, FindsTheFrameBehindOtherSegments) {
  const auto header = readJpegHeader(joined({kStart, kComment, {0xFF}, kTable, kFrame, kScan, kScan}));
  ASSERT_TRUE(header);
  EXPECT_EQ(header->precision, 12);
  EXPECT_EQ(header->height, 0x0102);
  EXPECT_EQ(header->width, 0x0304);
  EXPECT_EQ(header->scans, 2);
}

TEST(ReadJpegHeader, KnowsTheFrameOfJpegLs) {
  Bytes stream = joined({kStart, kFrame});
  stream[3] = 0xF7;
  EXPECT_TRUE(readJpegHeader(stream));
}

TEST(ReadJpegHeader, FindsNoneInWhatIsCutOrOther) {
  const Bytes whole = joined({kStart, kComment, kTable, kFrame});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(readJpegHeader(std::span(whole).first(length))) << length;
  }
  EXPECT_TRUE(readJpegHeader(whole));
  EXPECT_FALSE(readJpegHeader(kFrame));
  EXPECT_FALSE(readJpegHeader(joined({kStart, kScan, kFrame})));
  EXPECT_FALSE(readJpegHeader(joined({kStart, {0xFF, 0xFE, 0, 1}, kFrame})));
}

}  // namespace
