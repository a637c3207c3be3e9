#include "ei4info/stream_directory.h"

#include <gtest/gtest.h>

#include <numeric>

#include "ei4info_images.h"
#include "encoder/stream_builder.h"
#include "gwav4/status.h"
#include "reference/naive_decoder.h"
#include "support/stream_builder.h"

namespace {

using ei4::info::DirectoryState;
using ei4::info::StreamDirectory;
using ei4::test::Bytes;
using ei4::test::CodedStream;
using zel::gwav4::kHeaderBytes;

StreamDirectory walk(const Bytes& stream) {
  return ei4::info::walkDirectory(zel::gwav4::parseHeader(stream.data()),
                                  std::span(stream).subspan(kHeaderBytes));
}

TEST(StreamDirectory, CountsChunksAndBitsOfEachPlaneAndOrder) {
  const auto found = walk(CodedStream({.bytesPerPixel = 3, .width = 64, .height = 48})
                              .preamble(5, 3)
                              .significance(2, 3, "01101")
                              .significance(0, 3, "0110")
                              .refinement(0, 3, "11")
                              .significance(0, 3, "")
                              .significance(0, 0, "1")
                              .end());
  EXPECT_EQ(found.state, DirectoryState::complete);
  EXPECT_EQ(found.levels, 3);
  EXPECT_EQ(found.top, 5);
  EXPECT_EQ(found.trailingBytes, 0);
  EXPECT_EQ(found.fault, "");
  ASSERT_EQ(found.orders.size(), 3U);
  EXPECT_EQ(found.orders[0].plane, 0);
  EXPECT_EQ(found.orders[0].order, 0);
  EXPECT_EQ(found.orders[0].significance.bits, 1);
  EXPECT_EQ(found.orders[1].order, 3);
  EXPECT_EQ(found.orders[1].significance.chunks, 2);
  EXPECT_EQ(found.orders[1].significance.bits, 4);
  EXPECT_EQ(found.orders[1].refinement.chunks, 1);
  EXPECT_EQ(found.orders[1].refinement.bits, 2);
  EXPECT_EQ(found.orders[2].plane, 2);
  EXPECT_EQ(found.orders[2].significance.bits, 5);
}

TEST(StreamDirectory, TellsWhatStandsBehindTheEndCode) {
  Bytes stream = CodedStream({.width = 64, .height = 48}).preamble(5, 3).significance(0, 3, "0110").end();
  stream.insert(stream.end(), 11, 0xFF);
  EXPECT_EQ(walk(stream).state, DirectoryState::complete);
  EXPECT_EQ(walk(stream).trailingBytes, 11);
}

TEST(StreamDirectory, KnowsAnEndBehindAChunkFromOneWithinIt) {
  const auto open =
      walk(CodedStream({.width = 64, .height = 48}).preamble(5, 3).significance(0, 3, "0110").cut());
  EXPECT_EQ(open.state, DirectoryState::open);
  EXPECT_EQ(open.fault, "");
  const Bytes whole =
      CodedStream({.width = 64, .height = 48}).preamble(5, 3).significance(0, 3, std::string(200, '1')).end();
  const auto cut = walk(ei4::test::first(whole, kHeaderBytes + 10));
  EXPECT_EQ(cut.state, DirectoryState::cut);
  // 80 bits less 16 of the preamble, 7 of the entry and its length: w = floor(log2(2 * 64 * 48 * 1.5 + 1)) = 13, order 3.
  EXPECT_EQ(cut.fault, "the data ends within a chunk of plane 0, order 3: 49 of 200 bits");
  EXPECT_EQ(cut.orders.at(0).significance.bits, 49);
}

TEST(StreamDirectory, RefusesWhatNoStreamHas) {
  const ei4::tools::StreamHeader grey{.width = 64, .height = 48};
  EXPECT_EQ(walk(CodedStream(grey).preamble(5, 9).end()).fault, "states 9 levels; there are at most 8");
  EXPECT_EQ(walk(CodedStream(grey).preamble(32, 3).end()).fault, "states a top bit of 32; the highest is 31");
  EXPECT_EQ(walk(CodedStream(grey).preamble(5, 3).significance(1, 0, "1").end()).fault,
            "has a chunk of plane 1, order 0, which the image does not have");
  EXPECT_EQ(walk(CodedStream(grey).preamble(5, 3).significance(0, 4, "1").end()).fault,
            "has a chunk of plane 0, order 4, which the image does not have");
  EXPECT_EQ(
      walk(CodedStream(grey).preamble(0, 3).significance(0, 3, "1").significance(0, 3, "1").end()).fault,
      "has more chunks than bit positions at plane 0, order 3");
  EXPECT_EQ(walk(CodedStream(grey).preamble(0, 3).refinement(0, 3, "1").end()).fault,
            "has more chunks than bit positions at plane 0, order 3");
}

TEST(StreamDirectory, EndsAtTheFirstChunkTooManyHoweverManyFollow) {
  ei4::tools::StreamBuilder builder({.bytesPerPixel = 2, .bitsPerPixel = 16, .width = 8, .height = 8});
  builder.preamble(31, 0);
  for (int i = 0; i < 200000; ++i) builder.chunk({0, 0}, {});
  const auto found = walk(builder.build());
  EXPECT_EQ(found.state, DirectoryState::bad);
  EXPECT_EQ(found.orders.at(0).significance.chunks, 32);
}

TEST(StreamDirectory, AgreesWithTheSlowDecoderOnEveryInputOfTheCorpus) {
  std::size_t states[4] = {};
  for (Bytes input : ei4::test::corpusOf("stream")) {
    if (input.size() < 7 + kHeaderBytes) continue;
    input.erase(input.begin(), input.begin() + 7);  // factor, limit and cut of the fuzz target
    const auto header = zel::gwav4::parseHeader(input.data());
    if (header.bytesPerPixel < 1 || header.bytesPerPixel > 3 ||
        versionOf(header) == zel::gwav4::Version::unknown)
      continue;
    for (const std::size_t cut : {0U, 1U, 2U, 9U}) {
      const Bytes stream = ei4::test::first(input, std::max(input.size() - cut, kHeaderBytes));
      const auto found = walk(stream);
      ++states[static_cast<int>(found.state)];
      const int status = ei4::test::decodeNaively(stream, 0, 0).status;
      const bool topTooHigh =
          found.levels && *found.top >= 16 && (header.bytesPerPixel != 2 || header.bitsPerPixel <= 11);
      switch (found.state) {
        case DirectoryState::complete:
          EXPECT_EQ(status, topTooHigh ? zel::gwav4::kBadStream : zel::gwav4::kComplete);
          break;
        case DirectoryState::bad:
          EXPECT_EQ(status, zel::gwav4::kBadStream);
          break;
        default:
          EXPECT_EQ(status, topTooHigh ? zel::gwav4::kBadStream : zel::gwav4::kPartial);
      }
    }
  }
  EXPECT_GT(std::accumulate(std::begin(states), std::end(states), std::size_t{0}), 80U);
  EXPECT_GT(states[static_cast<int>(DirectoryState::complete)], 10U);
  EXPECT_GT(states[static_cast<int>(DirectoryState::cut)], 10U);
}

}  // namespace
