// The real decoder against the slow one, on whole streams and on damaged ones: status, size and every byte.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "encoder/gw_encoder.h"
#include "reference/naive_decoder.h"
#include "support/stream_builder.h"
#include "support/stream_decode.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using Bytes = std::vector<unsigned char>;
using tools::ChunkOrder;
using tools::RunEnding;

constexpr std::size_t kHeaderBytes = zel::gwav4::kHeaderBytes;
constexpr int kFactors = 7;  // 0 to 6

std::string described(const Bytes& stream, int factor, int level) {
  std::string text = "factor " + std::to_string(factor) + ", level " + std::to_string(level) + ", stream";
  constexpr std::size_t kMostShown = 2000;
  if (stream.size() > kMostShown) return text + " of " + std::to_string(stream.size()) + " bytes";
  for (const unsigned char byte : stream) {
    text += ' ';
    for (const int nibble : {byte >> 4, byte & 15}) text += "0123456789abcdef"[nibble];
  }
  return text;
}

testing::AssertionResult decodersAgree(const Bytes& stream, int factor, int level = 0) {
  const NaiveResult wanted = decodeNaively(stream, factor, level);
  const DecodedPicture got = decodeStream(stream, factor, level);
  if (got.status != wanted.status) {
    return testing::AssertionFailure() << "status " << got.status << " instead of " << wanted.status << "; "
                                       << described(stream, factor, level);
  }
  if (got.width != wanted.width || got.height != wanted.height) {
    return testing::AssertionFailure()
           << "size " << got.width << " x " << got.height << "; " << described(stream, factor, level);
  }
  const Bytes pixels =
      wanted.pixels.empty() ? Bytes(got.pixels.size(), DecodedPicture::kUntouched) : Bytes(wanted.pixels);
  if (got.pixels != pixels) {
    return testing::AssertionFailure() << "other pixels; " << described(stream, factor, level);
  }
  return testing::AssertionSuccess();
}

/// Smooth parts, edges and noise in changing shares, so that runs of every length occur.
Bytes randomPicture(Dice& dice, int width, int height, int bytesPerPixel, int bits) {
  const int most = (1 << bits) - 1;
  const int noise = dice.below(3) == 0 ? most : dice.below(4);
  const int components = bytesPerPixel == 3 ? 3 : 1;
  const int edge = dice.between(1, width);
  Bytes pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < components; ++c) {
        int value = (x < edge ? most / 3 : most) - (x + 2 * y + c) * most / 200;
        value = std::max(0, std::min(most, value + dice.between(-noise, noise)));
        pixels.push_back(static_cast<unsigned char>(value));
        if (bytesPerPixel == 2) pixels.push_back(static_cast<unsigned char>(value >> 8));
      }
    }
  }
  return pixels;
}

tools::EncodeOptions randomOptions(Dice& dice) {
  tools::EncodeOptions options;
  options.magic = dice.chance(2) ? Magic::GW40 : Magic::GW41;
  options.bytesPerPixel = dice.between(1, 3);
  options.bitsPerPixel = options.bytesPerPixel == 2 ? dice.between(1, 16) : dice.between(1, 8);
  if (dice.chance(2)) options.levels = dice.between(0, 8);
  options.lowestBit = dice.chance(4) ? dice.between(0, 5) : 0;
  constexpr ChunkOrder kOrders[] = {ChunkOrder::CoarseFirst, ChunkOrder::ByBitPosition, ChunkOrder::ByOrder};
  options.chunkOrder = kOrders[dice.below(3)];
  constexpr RunEnding kEndings[] = {RunEnding::ExactRun, RunEnding::EndlessRun, RunEnding::Terminator,
                                    RunEnding::OverLongRun};
  options.ending = kEndings[dice.below(4)];
  options.runsInEmptyChunks = dice.chance(2);
  return options;
}

Bytes randomStream(Dice& dice, int longestSide) {
  const tools::EncodeOptions options = randomOptions(dice);
  const int width = dice.between(1, longestSide);
  const int height = dice.between(1, longestSide);
  const Bytes pixels = randomPicture(dice, width, height, options.bytesPerPixel, options.bitsPerPixel);
  try {
    return tools::encode(pixels, width, height, options);
  } catch (const tools::ChunkTooLong&) {
    return randomStream(dice, longestSide);  // so many levels do not fit this picture: roll again
  }
}

/// Changes some bits behind the first `spared` bytes.
void flipBits(Dice& dice, Bytes& stream, std::size_t spared) {
  if (stream.size() <= spared) return;
  for (int flips = dice.between(1, 6); flips > 0; --flips) {
    // Half of the damage goes to the preamble and the first chunks, where it does most.
    const int room = static_cast<int>(stream.size() - spared);
    const int at = dice.chance(2) ? dice.below(std::min(room, 12)) : dice.below(room);
    stream[spared + static_cast<std::size_t>(at)] ^= static_cast<unsigned char>(1 << dice.below(8));
  }
}

TEST(BothDecoders, AgreeOnWholeStreamsAtEveryFactor) {
  for (unsigned seed = 0; seed < 250; ++seed) {
    Dice dice(seed);
    const Bytes stream = randomStream(dice, seed % 10 == 0 ? 150 : 45);
    for (int factor = 0; factor < kFactors; ++factor) {
      ASSERT_TRUE(decodersAgree(stream, factor)) << "seed " << seed;
    }
  }
}

TEST(BothDecoders, AgreeOnEveryPrefixOfSmallStreams) {
  for (unsigned seed = 1000; seed < 1006; ++seed) {
    Dice dice(seed);
    const Bytes stream = randomStream(dice, 20);
    for (std::size_t bytes = kHeaderBytes; bytes <= stream.size(); ++bytes) {
      const Bytes prefix(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(bytes));
      ASSERT_TRUE(decodersAgree(prefix, static_cast<int>(bytes) % 3)) << "seed " << seed;
    }
  }
}

TEST(BothDecoders, AgreeOnCutStreams) {
  for (unsigned seed = 2000; seed < 2800; ++seed) {
    Dice dice(seed);
    Bytes stream = randomStream(dice, 40);
    stream.resize(static_cast<std::size_t>(dice.between(kHeaderBytes, static_cast<int>(stream.size()))));
    ASSERT_TRUE(decodersAgree(stream, dice.below(kFactors))) << "seed " << seed;
  }
}

TEST(BothDecoders, AgreeOnDamagedStreams) {
  for (unsigned seed = 3000; seed < 5500; ++seed) {
    Dice dice(seed);
    Bytes stream = randomStream(dice, 30);
    flipBits(dice, stream, kHeaderBytes);
    if (dice.chance(3)) {
      stream.resize(static_cast<std::size_t>(dice.between(kHeaderBytes, static_cast<int>(stream.size()))));
    }
    ASSERT_TRUE(decodersAgree(stream, dice.below(kFactors))) << "seed " << seed;
  }
}

TEST(BothDecoders, AgreeOnStreamsWithAWrongFormatInTheHeader) {
  for (unsigned seed = 6000; seed < 6600; ++seed) {
    Dice dice(seed);
    Bytes stream = randomStream(dice, 30);
    stream[3] = static_cast<unsigned char>(dice.chance(10) ? dice.byte() : '0' + dice.below(2));
    stream[4] = static_cast<unsigned char>(dice.below(5));
    stream[5] = dice.chance(2) ? dice.byte() : static_cast<unsigned char>(dice.below(17));
    stream[6] = static_cast<unsigned char>(dice.below(70));
    stream[8] = static_cast<unsigned char>(dice.below(70));
    ASSERT_TRUE(decodersAgree(stream, dice.below(kFactors))) << "seed " << seed;
  }
}

TEST(BothDecoders, AgreeOnRandomBytesBehindAValidHeader) {
  for (unsigned seed = 7000; seed < 9000; ++seed) {
    Dice dice(seed);
    StreamHeader header;
    header.magic = dice.chance(2) ? Magic::GW40 : Magic::GW41;
    header.bytesPerPixel = dice.between(1, 3);
    header.bitsPerPixel = dice.between(0, 17);
    header.width = dice.between(0, 40);
    header.height = dice.between(0, 40);
    CodedStream builder(header);
    if (!dice.chance(8)) builder.preamble(dice.between(-1, 16), dice.between(0, 8));
    Bytes stream = builder.cut();
    const Bytes noise = dice.bytes(dice.between(0, 600), dice.below(4));
    stream.insert(stream.end(), noise.begin(), noise.end());
    ASSERT_TRUE(decodersAgree(stream, dice.below(kFactors))) << "seed " << seed;
  }
}

/// A directory with plausible lengths over noise: it gets far further than noise alone.
Bytes randomChunks(Dice& dice) {
  StreamHeader header;
  header.magic = dice.chance(2) ? Magic::GW40 : Magic::GW41;
  header.bytesPerPixel = dice.between(1, 3);
  header.bitsPerPixel = dice.between(1, 16);
  header.width = dice.between(1, 50);
  header.height = dice.between(1, 50);
  const int levels = dice.between(0, 8);
  const int positions = tools::usesShortCoefficients(header) ? 16 : 32;
  tools::StreamBuilder stream(header);
  stream.preamble(dice.between(-1, dice.chance(20) ? positions : positions - 1), levels);
  for (int chunks = dice.between(0, 80); chunks > 0; --chunks) {
    const tools::ChunkId id = {
        header.bytesPerPixel == 3 ? dice.below(3) : 0, dice.between(0, levels),
        dice.chance(2) ? tools::ChunkKind::Refinement : tools::ChunkKind::Significance};
    tools::BitWriter payload;
    for (const unsigned char byte : dice.bytes(dice.below(12), dice.below(4)))
      payload.put(byte, dice.between(1, 8));
    if (dice.chance(6))
      payload.putZeros(static_cast<std::uint64_t>(dice.between(35, 45)));  // about an escape
    if (dice.chance(2)) payload.put(1, 1);
    if (stream.fits(id, payload.bitCount())) stream.chunk(id, payload);
  }
  if (!dice.chance(4)) stream.end();
  return stream.build();
}

TEST(BothDecoders, AgreeOnRandomChunks) {
  for (unsigned seed = 10'000; seed < 12'000; ++seed) {
    Dice dice(seed);
    ASSERT_TRUE(decodersAgree(randomChunks(dice), dice.below(kFactors))) << "seed " << seed;
  }
}

// Blocks of several words, rows beyond a word, bands that are read in several goes.
TEST(BothDecoders, AgreeOnLargerPictures) {
  for (unsigned seed = 20'000; seed < 20'016; ++seed) {
    Dice dice(seed);
    tools::EncodeOptions options = randomOptions(dice);
    options.levels.reset();
    const int width = dice.between(100, 400);
    const int height = dice.between(100, 300);
    Bytes stream =
        tools::encode(randomPicture(dice, width, height, options.bytesPerPixel, options.bitsPerPixel), width,
                      height, options);
    ASSERT_TRUE(decodersAgree(stream, 0)) << "seed " << seed;
    ASSERT_TRUE(decodersAgree(stream, dice.between(1, kFactors - 1))) << "seed " << seed;
    ASSERT_TRUE(decodersAgree(stream, dice.below(2), -dice.between(1, height - 1))) << "seed " << seed;
    Bytes damaged = stream;
    flipBits(dice, damaged, kHeaderBytes + 2);
    ASSERT_TRUE(decodersAgree(damaged, dice.below(3))) << "seed " << seed;
    stream.resize(kHeaderBytes +
                  static_cast<std::size_t>(dice.below(static_cast<int>(stream.size() - kHeaderBytes))));
    ASSERT_TRUE(decodersAgree(stream, dice.below(3))) << "seed " << seed;
  }
}

/// Squares that are either black or as bright as can be.
Bytes starkPicture(Dice& dice, int width, int height, int bits) {
  const int most = (1 << bits) - 1;
  const int size = 1 << dice.below(6);
  const unsigned salt = static_cast<unsigned>(dice.any()) | 1U;
  Bytes pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const auto square = static_cast<unsigned>(x / size + 1000 * (y / size));
      const int value = ((square * salt) >> 7) % 2 == 0 ? 0 : most;
      pixels.push_back(static_cast<unsigned char>(value));
      pixels.push_back(static_cast<unsigned char>(value >> 8));
    }
  }
  return pixels;
}

TEST(BothDecoders, AgreeOnTheGreatestContrast) {
  for (unsigned seed = 21'000; seed < 21'100; ++seed) {
    Dice dice(seed);
    tools::EncodeOptions options = randomOptions(dice);
    options.levels.reset();
    options.bytesPerPixel = 2;
    options.bitsPerPixel = dice.between(10, 16);
    const int longest = seed % 10 == 0 ? 300 : 80;
    const int width = dice.between(1, longest);
    const int height = dice.between(1, longest);
    Bytes stream =
        tools::encode(starkPicture(dice, width, height, options.bitsPerPixel), width, height, options);
    ASSERT_TRUE(decodersAgree(stream, dice.below(3))) << "seed " << seed;
    Bytes damaged = stream;
    flipBits(dice, damaged, kHeaderBytes);
    ASSERT_TRUE(decodersAgree(damaged, dice.below(3))) << "seed " << seed;
    stream.resize(kHeaderBytes +
                  static_cast<std::size_t>(dice.below(static_cast<int>(stream.size() - kHeaderBytes))));
    ASSERT_TRUE(decodersAgree(stream, dice.below(3))) << "seed " << seed;
  }
}

/// Streams that no picture has: coefficients of at most `top` + 1 bits, nearly all of them that large, so that the
/// transform makes more of them than 16 bits hold.
Bytes loudStream(Dice& dice, int top) {
  StreamHeader header;
  header.magic = dice.chance(2) ? Magic::GW40 : Magic::GW41;
  header.bytesPerPixel = dice.between(1, 3);
  header.bitsPerPixel = dice.between(1, 16);
  header.width = dice.between(1, 100);
  header.height = dice.between(1, 60);
  const int levels = dice.between(1, 6);
  tools::StreamBuilder stream(header);
  stream.preamble(top, levels);
  const int quiet = dice.between(2, 30);
  for (int plane = 0; plane < (header.bytesPerPixel == 3 ? 3 : 1); ++plane) {
    for (int order = levels; order >= 0; --order) {
      const int side = 1 << order;
      const int most = ((header.width + side - 1) / side) * ((header.height + side - 1) / side);
      tools::BitWriter significance;
      tools::BitWriter refinement;
      for (int i = 0; i < most; ++i) {
        significance.put(dice.chance(quiet) ? 0 : 1, 1);
        significance.put(order == levels || dice.chance(3) ? 0 : 1, 1);
        refinement.put(dice.byte(), 1);
      }
      const tools::ChunkId decided = {plane, order, tools::ChunkKind::Significance};
      const tools::ChunkId refined = {plane, order, tools::ChunkKind::Refinement};
      if (stream.fits(decided, significance.bitCount())) stream.chunk(decided, significance);
      if (stream.fits(refined, refinement.bitCount())) stream.chunk(refined, refinement);
    }
  }
  stream.end();
  return stream.build();
}

TEST(BothDecoders, AgreeWhereSamplesGrowOutOfTheirBits) {
  int beyond = 0;
  for (unsigned seed = 22'000; seed < 22'400; ++seed) {
    Dice dice(seed);
    const Bytes stream = loudStream(dice, dice.between(10, 13));
    ASSERT_TRUE(decodersAgree(stream, 0)) << "seed " << seed;
    ASSERT_TRUE(decodersAgree(stream, dice.between(1, 3))) << "seed " << seed;
    const DecodedPicture picture = decodeStream(stream);
    if (picture.bytesPerPixel != 2) continue;
    for (std::size_t i = 0; i < picture.pixels.size() / 2; ++i) {
      const int sample = static_cast<std::int16_t>(picture.pixel16(i));
      if (sample < -(1 << 14) || sample >= 1 << 14) {
        ++beyond;
        break;
      }
    }
  }
  EXPECT_GT(beyond, 40);  // of some 130 grey pictures of 16 bits
}

TEST(BothDecoders, AgreeOnEveryLimitOfTheWork) {
  for (unsigned seed = 13'000; seed < 13'600; ++seed) {
    Dice dice(seed);
    const Bytes stream = dice.chance(2) ? randomStream(dice, 30) : randomChunks(dice);
    ASSERT_TRUE(decodersAgree(stream, dice.below(3), dice.between(-40, 40))) << "seed " << seed;
  }
}

}  // namespace
}  // namespace ei4::test
