#include "text/binary_code.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

// Buffers have exactly the promised sizes, so that AddressSanitizer sees a byte more.
std::string encode(const Bytes& bytes) {
  const std::size_t groups = bytes.empty() ? 1 : (bytes.size() + 2) / 3;
  std::vector<char> out(4 * groups + 2, '#');
  const unsigned long length = EncodeBinary(bytes.data(), bytes.size(), out.data());
  EXPECT_EQ(length, 4 * groups + 1);
  EXPECT_EQ(out.back(), '\0');
  return out.data();
}

struct Decoded {
  unsigned long count;
  Bytes bytes;  // all that were written
};

Decoded decode(std::string_view text) {
  const std::vector<char> in(text.begin(), text.end());
  Bytes out(in.size() / 4 * 3);
  const unsigned long count = DecodeBinary(in.data(), in.size(), out.data());
  return {count, out};
}

TEST(EncodeBinary, TakesSixBitsACharacterLowestFirst) {
  EXPECT_EQ(encode({0x01, 0, 0}), "A@@@0");
  EXPECT_EQ(encode({0x40, 0, 0}), "@A@@0");
  EXPECT_EQ(encode({0, 0x10, 0}), "@@A@0");
  EXPECT_EQ(encode({0, 0, 0x04}), "@@@A0");
  EXPECT_EQ(encode({0xFF, 0xFF, 0xFF}),
            "\x7F\x7F\x7F\x7F"
            "0");
  // 0x563412: 010101 100011 010000 010010, from the right: 18, 16, 35, 21
  EXPECT_EQ(encode({0x12, 0x34, 0x56}), "RPcU0");
}

TEST(EncodeBinary, CountsTheBytesThatFillUpTheLastGroup) {
  EXPECT_EQ(encode({1}), "A@@@2");
  EXPECT_EQ(encode({1, 0x10}), "A@A@1");
  EXPECT_EQ(encode({1, 0x10, 4}), "A@AA0") << "three bytes are a last group, not a full one before it";
  EXPECT_EQ(encode({1, 0x10, 4, 1}), "A@AAA@@@2");
  EXPECT_EQ(encode({0, 0, 0, 0, 0, 0}), "@@@@@@@@0");
}

TEST(EncodeBinary, WritesAGroupOfZerosForNoBytes) {
  EXPECT_EQ(encode({}), "@@@@3");
  char out[6];
  EXPECT_EQ(EncodeBinary(nullptr, 0, out), 5u);
  EXPECT_STREQ(out, "@@@@3");
}

TEST(DecodeBinary, UndoesTheEncodingOfAnyLength) {
  Bytes bytes;
  for (unsigned i = 0; i < 70; ++i) {
    const Decoded decoded = decode(encode(bytes));
    ASSERT_EQ(decoded.count, bytes.size());
    EXPECT_THAT(Bytes(decoded.bytes.begin(), decoded.bytes.begin() + static_cast<long>(decoded.count)),
                testing::ElementsAreArray(bytes));
    bytes.push_back(static_cast<std::uint8_t>(i * 89 + 13));
  }
}

TEST(DecodeBinary, TakesTheLowSixBitsOfAnyCharacter) {
  EXPECT_THAT(decode("RPcU").bytes, testing::ElementsAre(0x12, 0x34, 0x56));
  EXPECT_THAT(decode("\x12\x90\xE3\x15").bytes, testing::ElementsAre(0x12, 0x34, 0x56));
}

TEST(DecodeBinary, TakesAnySingleCharacterBehindTheGroupsForTheCount) {
  EXPECT_EQ(decode("@@@@0").count, 3u);
  EXPECT_EQ(decode("@@@@2").count, 1u);
  EXPECT_EQ(decode("@@@@3").count, 0u);
  EXPECT_EQ(decode("@@@@4").count, 3u) << "its low two bits alone count";
  EXPECT_EQ(decode("@@@@A").count, 2u);
  EXPECT_EQ(decode("@@@@@@@@\xFF").count, 3u);
}

TEST(DecodeBinary, CountsWholeGroupsWithoutASingleCharacterBehindThem) {
  EXPECT_EQ(decode("@@@@").count, 3u);
  EXPECT_EQ(decode("@@@@33").count, 3u);
  EXPECT_EQ(decode("@@@@333").count, 3u);
  EXPECT_EQ(decode("@@@@@@@@").count, 6u);
}

TEST(DecodeBinary, AnswersZeroWithoutAGroup) {
  EXPECT_EQ(decode("").count, 0u);
  EXPECT_EQ(decode("3").count, 0u) << "never below zero";
  EXPECT_EQ(decode("333").count, 0u);
  EXPECT_EQ(DecodeBinary(nullptr, 0, nullptr), 0u);
}

}  // namespace
