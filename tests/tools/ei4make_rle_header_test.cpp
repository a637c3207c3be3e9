#include "ei4make/rle_header.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using ei4::tools::hasRleHeader;
using Bytes = std::vector<unsigned char>;

Bytes frame(std::size_t size, unsigned char segments, std::initializer_list<unsigned char> begins) {
  Bytes bytes(size);
  bytes[0] = segments;
  std::size_t at = 4;
  for (const unsigned char begin : begins) {
    bytes[at] = begin;
    at += 4;
  }
  return bytes;
}

TEST(HasRleHeader, WantsEachSegmentToBeginWithinTheFrame) {
  EXPECT_TRUE(hasRleHeader(frame(68, 1, {64}), 1));
  EXPECT_TRUE(hasRleHeader(frame(68, 2, {64, 66}), 2));
  EXPECT_FALSE(hasRleHeader(frame(68, 2, {64, 66}), 1));
  EXPECT_FALSE(hasRleHeader(frame(68, 2, {64, 68}), 2));
  EXPECT_FALSE(hasRleHeader(frame(68, 2, {66, 64}), 2));
  EXPECT_FALSE(hasRleHeader(frame(68, 2, {66, 66}), 2));
  EXPECT_FALSE(hasRleHeader(frame(68, 1, {63}), 1));
  EXPECT_FALSE(hasRleHeader(frame(68, 1, {64}), 16));
  Bytes far = frame(68, 1, {64});
  far[7] = 0x80;
  EXPECT_FALSE(hasRleHeader(far, 1));
  EXPECT_FALSE(hasRleHeader(Bytes(63), 1));
}

}  // namespace
