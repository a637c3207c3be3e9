// The encoder against two decoders that share no code with it: the real one and the naive one of the tests.
#include "encoder/gw_encoder.h"

#include <gtest/gtest.h>

#include <cmath>

#include "gwav4/decompressor.h"
#include "reference/naive_decoder.h"
#include "tools/test_pictures.h"

namespace {

using namespace ei4::tools;
using ei4::test::Look;
using ei4::test::testPicture;
using Bytes = std::vector<unsigned char>;

struct Decoded {
  int status = 0;
  Bytes pixels;
};

Decoded decoded(const Bytes& stream, int factor = 0) {
  zel::gwav4::CGWavDecompressor decompressor(stream.data(), stream.size() - kStreamHeaderBytes, factor, 0);
  Decoded result;
  result.pixels.resize(static_cast<std::size_t>(decompressor.getXSize()) *
                       static_cast<std::size_t>(decompressor.getYSize()) *
                       static_cast<std::size_t>(decompressor.getBytesPerPixel()));
  result.status = decompressor.decompress(result.pixels.data(), result.pixels.size(), 0);
  return result;
}

EncodeOptions optionsFor(int bytesPerPixel, int bits) {
  EncodeOptions options;
  options.bytesPerPixel = bytesPerPixel;
  options.bitsPerPixel = bits;
  return options;
}

void expectLossless(const Bytes& pixels, int width, int height, const EncodeOptions& options) {
  SCOPED_TRACE(testing::Message() << width << " x " << height << ", " << options.bytesPerPixel << " bytes, "
                                  << options.bitsPerPixel << " bits");
  const Bytes stream = encode(pixels, width, height, options);
  const Decoded fast = decoded(stream);
  EXPECT_EQ(fast.status, 0);
  EXPECT_TRUE(fast.pixels == pixels) << "real decoder";
  const ei4::test::NaiveResult slow = ei4::test::decodeNaively(stream, 0);
  EXPECT_EQ(slow.status, 0);
  EXPECT_TRUE(slow.pixels == pixels) << "naive decoder";
}

void expectLosslessLooks(int width, int height, const EncodeOptions& options) {
  for (const Look look : {Look::Noise, Look::Flat, Look::Smooth}) {
    expectLossless(testPicture(width, height, options.bytesPerPixel, options.bitsPerPixel, look), width,
                   height, options);
  }
}

class RoundTripOfMagic : public testing::TestWithParam<Magic> {};
INSTANTIATE_TEST_SUITE_P(Both, RoundTripOfMagic, testing::Values(Magic::GW40, Magic::GW41));

TEST_P(RoundTripOfMagic, IsLosslessForThinPictures) {
  EncodeOptions options = optionsFor(2, 12);
  options.magic = GetParam();
  for (int n = 1; n <= 70; ++n) {
    for (int other = 1; other <= 3; ++other) {
      expectLosslessLooks(n, other, options);
      expectLosslessLooks(other, n, options);
    }
  }
}

TEST_P(RoundTripOfMagic, IsLosslessOverAGridOfSizes) {
  EncodeOptions options = optionsFor(1, 8);
  options.magic = GetParam();
  const int sides[] = {4, 5, 7, 8, 9, 15, 16, 17, 24, 31, 32, 33, 45, 47, 48, 63, 64, 65, 69, 70};
  for (const int width : sides) {
    for (const int height : sides) expectLosslessLooks(width, height, options);
  }
}

TEST_P(RoundTripOfMagic, IsLosslessAtEveryDepth) {
  for (int bits = 1; bits <= 16; ++bits) {
    EncodeOptions options = optionsFor(2, bits);
    options.magic = GetParam();
    expectLosslessLooks(40, 35, options);
    if (bits > 8) continue;
    options.bytesPerPixel = 1;
    expectLosslessLooks(40, 35, options);
    options.bytesPerPixel = 3;
    expectLosslessLooks(40, 35, options);
  }
}

TEST(RoundTrip, IsLosslessInColourForEverySmallSize) {
  for (int width = 1; width <= 20; ++width) {
    for (int height = 1; height <= 20; ++height) expectLosslessLooks(width, height, optionsFor(3, 8));
  }
}

// 11 stated bits are decoded in 16-bit arithmetic, which wraps for full 16-bit values and comes back all the
// same.
TEST(RoundTrip, IsLosslessWhereSixteenBitCoefficientsWrap) {
  expectLossless(testPicture(61, 50, 2, 16, Look::Noise), 61, 50, optionsFor(2, 11));
}

TEST(RoundTrip, IsLosslessAtEveryLevelCountThatFits) {
  EncodeOptions options = optionsFor(2, 12);
  int fitting = 0;
  for (int levels = 0; levels <= 8; ++levels) {
    options.levels = levels;
    const Bytes pixels = testPicture(300, 270, 2, 12, Look::Smooth);
    try {
      EXPECT_EQ(levelsOf(encode(pixels, 300, 270, options)), levels);
    } catch (const ChunkTooLong&) {
      continue;
    }
    expectLossless(pixels, 300, 270, options);
    ++fitting;
  }
  EXPECT_GE(fitting, 6);  // 300 and 270 leave 8 samples a side at up to 5 levels
}

class RoundTripOfChunks : public testing::TestWithParam<std::tuple<ChunkOrder, RunEnding, bool>> {};
INSTANTIATE_TEST_SUITE_P(AllOrdersAndEndings, RoundTripOfChunks,
                         testing::Combine(testing::Values(ChunkOrder::CoarseFirst, ChunkOrder::ByBitPosition,
                                                          ChunkOrder::ByOrder),
                                          testing::Values(RunEnding::ExactRun, RunEnding::EndlessRun,
                                                          RunEnding::Terminator, RunEnding::OverLongRun),
                                          testing::Bool()));

TEST_P(RoundTripOfChunks, IsLossless) {
  for (const Magic magic : {Magic::GW40, Magic::GW41}) {
    EncodeOptions options = optionsFor(2, 12);
    options.magic = magic;
    std::tie(options.chunkOrder, options.ending, options.runsInEmptyChunks) = GetParam();
    expectLosslessLooks(66, 70, options);
    expectLosslessLooks(3, 2, options);
    options.bytesPerPixel = 3;
    options.bitsPerPixel = 8;
    expectLosslessLooks(67, 33, options);
  }
}

TEST(RoundTrip, EndingsReachTheStream) {
  EncodeOptions options = optionsFor(2, 12);
  const Bytes pixels = testPicture(66, 70, 2, 12, Look::Smooth);
  std::vector<Bytes> streams;
  for (const RunEnding ending :
       {RunEnding::ExactRun, RunEnding::EndlessRun, RunEnding::Terminator, RunEnding::OverLongRun}) {
    options.ending = ending;
    for (const Bytes& other : streams) EXPECT_NE(encode(pixels, 66, 70, options), other);
    streams.push_back(encode(pixels, 66, 70, options));
  }
}

TEST(RoundTrip, TakesACustomSequence) {
  EncodeOptions options = optionsFor(1, 8);
  options.levels = 1;
  options.chunkOrder = ChunkOrder::Custom;
  for (int round = 0; round < 10;
       ++round) {  // refinement first; the flat picture has its only bit at position 7
    for (const ChunkKind kind : {ChunkKind::Refinement, ChunkKind::Significance}) {
      for (const int order : {0, 1}) {
        if (round < (kind == ChunkKind::Refinement ? 7 : 8)) options.customOrder.push_back({0, order, kind});
      }
    }
  }
  expectLossless(testPicture(20, 20, 1, 8, Look::Flat), 20, 20, options);
}

TEST(RoundTrip, AFlatPictureOf177PixelsASideNeedsFewerLevelsInGW40) {
  const Bytes white = testPicture(177, 177, 1, 8, Look::Flat);
  EncodeOptions options = optionsFor(1, 8);
  EXPECT_EQ(levelsOf(encode(white, 177, 177, options)), 4);
  // All values of the coarsest grid come at once, two bits each and one: 12 x 12 need 289 bits of a field
  // that ends at 255, 23 x 23 need 1059 of 1023, 45 x 45 need 4051 of 4095.
  options.magic = Magic::GW40;
  EXPECT_EQ(levelsOf(encode(white, 177, 177, options)), 2);
  expectLossless(white, 177, 177, options);
  options.levels = 4;
  EXPECT_THROW(encode(white, 177, 177, options), ChunkTooLong);
}

TEST(Reduced, PicturesOfBothDecodersAgree) {
  for (const int bytesPerPixel : {1, 2, 3}) {
    const int bits = bytesPerPixel == 2 ? 12 : 8;
    const Bytes stream = encode(testPicture(203, 150, bytesPerPixel, bits, Look::Smooth), 203, 150,
                                optionsFor(bytesPerPixel, bits));
    for (int factor = 1; factor <= 7; ++factor) {
      const ei4::test::NaiveResult slow = ei4::test::decodeNaively(stream, factor);
      const Decoded fast = decoded(stream, factor);
      EXPECT_EQ(fast.status, 4);
      EXPECT_EQ(slow.status, 4);
      EXPECT_TRUE(fast.pixels == slow.pixels) << factor;
    }
  }
}

int sampleAt(const Bytes& pixels, std::size_t i) { return pixels[2 * i] | pixels[2 * i + 1] << 8; }

double meanSquare(const Bytes& a, const Bytes& b) {
  double sum = 0;
  for (std::size_t i = 0; i < a.size() / 2; ++i) sum += std::pow(sampleAt(a, i) - sampleAt(b, i), 2);
  return sum / (static_cast<double>(a.size()) / 2);
}

// A coefficient without its lowest N bits is off by at most e = 2^N - 1. Undoing one level adds, per
// direction, at most e / 2 + 1 to an even sample and that even sample's error + 1 to an odd one: 2.5 e + 2 in
// all.
TEST(Lossy, KeepsTheBoundOfOneLevel) {
  EncodeOptions options = optionsFor(2, 12);
  options.levels = 1;
  const Bytes pixels = testPicture(64, 50, 2, 12, Look::Noise);
  for (int lowest = 0; lowest <= 8; ++lowest) {
    options.lowestBit = lowest;
    const double coefficientError = std::pow(2.0, lowest) - 1;
    const double bound = lowest == 0 ? 0 : 2.5 * (2.5 * coefficientError + 2) + 2;
    const Decoded result = decoded(encode(pixels, 64, 50, options));
    for (std::size_t i = 0; i < pixels.size() / 2; ++i) {
      ASSERT_LE(std::abs(sampleAt(pixels, i) - sampleAt(result.pixels, i)), bound) << lowest << ": " << i;
    }
  }
}

TEST(Lossy, EachBitLessCostsQualityAndSavesBytes) {
  EncodeOptions options = optionsFor(2, 12);
  const Bytes pixels = testPicture(200, 150, 2, 12, Look::Smooth);
  Bytes last = encode(pixels, 200, 150, options);
  double lastError = 0;
  for (int lowest = 1; lowest <= 9; ++lowest) {
    options.lowestBit = lowest;
    const Bytes stream = encode(pixels, 200, 150, options);
    const double error = meanSquare(decoded(stream).pixels, pixels);
    EXPECT_LT(stream.size(), last.size());
    EXPECT_GT(error, lastError);
    last = stream;
    lastError = error;
  }
}

// Black and white dots overshoot when bits are missing; without the clamp a white one would wrap to black.
TEST(Lossy, SamplesAreClampedAndNeverWrap) {
  Bytes pixels = testPicture(64, 64, 1, 1, Look::Noise);
  for (unsigned char& pixel : pixels) pixel = pixel != 0 ? 255 : 0;
  EncodeOptions options = optionsFor(1, 8);
  options.lowestBit = 4;
  const Bytes stream = encode(pixels, 64, 64, options);
  const Decoded result = decoded(stream);
  EXPECT_EQ(result.status, 4);
  int clamped = 0;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    EXPECT_LT(std::abs(pixels[i] - result.pixels[i]), 128) << i;
    if (pixels[i] == result.pixels[i]) ++clamped;
  }
  EXPECT_GT(clamped, 1000);

  options.endCode = true;  // the same chunks taken for a complete stream are not clamped
  EXPECT_EQ(decoded(encode(pixels, 64, 64, options)).status, 0);
}

TEST(Lossy, AboveTheTopBitNothingIsLeft) {
  EncodeOptions options = optionsFor(1, 8);
  options.lowestBit = 12;
  const Bytes stream = encode(testPicture(30, 30, 1, 8, Look::Noise), 30, 30, options);
  EXPECT_EQ(stream.size(), static_cast<std::size_t>(kStreamHeaderBytes) + 2);
  const Decoded result = decoded(stream);
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.pixels, Bytes(900, 0));
}

TEST(Prefix, CoarseFirstGivesTheBestPicture) {
  const Bytes pixels = testPicture(256, 256, 2, 12, Look::Smooth);
  EncodeOptions options = optionsFor(2, 12);
  const auto errorOf = [&](ChunkOrder order) {
    options.chunkOrder = order;
    Bytes stream = encode(pixels, 256, 256, options);
    stream.resize(6000);
    return meanSquare(decoded(stream).pixels, pixels);
  };
  const double coarseFirst = errorOf(ChunkOrder::CoarseFirst);
  EXPECT_LT(coarseFirst, errorOf(ChunkOrder::ByBitPosition));
  EXPECT_LT(coarseFirst, errorOf(ChunkOrder::ByOrder));
}

TEST(Encode, RefusesWhatCannotBeWritten) {
  const Bytes pixels(100);
  const EncodeOptions grey = optionsFor(1, 8);
  EXPECT_THROW(encode(pixels, 10, 9, grey), EncodeError);
  EXPECT_THROW(encode({}, 0, 10, grey), EncodeError);
  EXPECT_THROW(encode(Bytes(65536), 65536, 1, grey), EncodeError);
  EXPECT_THROW(encode(Bytes(400), 10, 10, optionsFor(4, 8)), EncodeError);
  EXPECT_THROW(encode(pixels, 10, 10, optionsFor(1, 9)), EncodeError);
  EXPECT_THROW(encode(Bytes(200), 10, 10, optionsFor(2, 17)), EncodeError);
  EncodeOptions options = grey;
  options.levels = 9;
  EXPECT_THROW(encode(pixels, 10, 10, options), EncodeError);
  options = grey;
  options.lowestBit = -1;
  EXPECT_THROW(encode(pixels, 10, 10, options), EncodeError);
  options.lowestBit = 32;
  EXPECT_THROW(encode(pixels, 10, 10, options), EncodeError);
}

}  // namespace
