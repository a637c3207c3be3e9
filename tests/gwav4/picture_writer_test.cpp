#include "gwav4/picture_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "coded_orders.h"
#include "gwav4/kernels.h"
#include "reference/naive_output.h"
#include "reference/naive_transform.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using testing::Each;
using zel::gwav4::copyPlane;
using zel::gwav4::kernels;
using zel::gwav4::LaneKernel;
using zel::gwav4::levelsToInvert;
using zel::gwav4::PictureFormat;
using zel::gwav4::PictureSource;
using zel::gwav4::writePicture;

using Samples = std::vector<std::int32_t>;
using Pixels = std::vector<std::uint8_t>;

constexpr std::uint8_t kGuard = 0xA5;
constexpr std::size_t kGuards = 256;

/// Planes of coefficients of one size, and the pictures that are made of them.
class Coded {
 public:
  Coded(int width, int height, int levels, std::vector<Samples> planes)
      : m_Width(width),
        m_Height(height),
        m_Levels(levelsToInvert(levels, width, height)),
        m_Planes(std::move(planes)) {
    int top = -1;
    for (const Samples& plane : m_Planes) top = std::max(top, topOf(plane));
    for (const Samples& plane : m_Planes) {
      m_Coded.push_back(std::make_unique<CodedOrders>(top, sortedIntoOrders(plane, width, m_Levels)));
    }
  }

  /// At the start of all streams.
  PictureSource source() const {
    PictureSource source;
    for (const auto& coded : m_Coded) source.planes.push_back(coded->cursors);
    source.shape = {m_Width, m_Height, m_Levels, true};
    source.rowEnds.assign(m_Planes.size(), m_Height);
    source.stopped = &stopped;
    source.killed = &killed;
    return source;
  }

  template <class Lane>
  bool write(const LaneKernel<Lane>& kernel, const PictureFormat& format, Pixels& out) const {
    const std::size_t size = sizeOf(format);
    // From the heap, so that it is aligned; the guards are behind the last pixel.
    out.assign(size + kGuards, kGuard);
    PictureSource from = source();
    const bool right = writePicture<Lane>(kernel, from, format, out.data());
    EXPECT_EQ(std::count(out.end() - kGuards, out.end(), kGuard), static_cast<std::ptrdiff_t>(kGuards))
        << described(format);
    out.resize(size);
    return right;
  }

  Pixels reference(const PictureFormat& format, int storageBits) const {
    std::vector<NaivePlane> planes;
    for (const Samples& samples : m_Planes) {
      NaivePlane& plane = planes.emplace_back();
      plane.width = m_Width;
      plane.height = m_Height;
      plane.storageBits = storageBits;
      plane.samples = samples;
      invertLevels(plane, m_Levels);
    }
    return convertSamples(planes, format.bytesPerPixel, format.bits, format.step);
  }

  std::string described(const PictureFormat& format) const {
    return std::to_string(m_Width) + " x " + std::to_string(m_Height) + ", " + std::to_string(m_Levels) +
           " levels, " + std::to_string(format.bytesPerPixel) + " bytes a pixel, " +
           std::to_string(format.bits) + " bits, step " + std::to_string(format.step);
  }

  std::atomic<bool> stopped = false;
  std::atomic<bool> killed = false;

 private:
  std::size_t sizeOf(const PictureFormat& format) const {
    const auto reduced = [&](int side) {
      return static_cast<std::size_t>((side + format.step - 1) / format.step);
    };
    return reduced(m_Width) * reduced(m_Height) * static_cast<std::size_t>(format.bytesPerPixel);
  }

  int m_Width;
  int m_Height;
  int m_Levels;
  std::vector<Samples> m_Planes;
  std::vector<std::unique_ptr<CodedOrders>> m_Coded;
};

Samples randomPlane(Dice& dice, int width, int height, int most) {
  Samples plane(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (std::int32_t& sample : plane) sample = dice.between(-most, most);
  return plane;
}

Coded randomPicture(Dice& dice, int width, int height, int levels, int planes, int most) {
  std::vector<Samples> all;
  all.reserve(static_cast<std::size_t>(planes));
  for (int i = 0; i < planes; ++i) all.push_back(randomPlane(dice, width, height, most));
  return {width, height, levels, std::move(all)};
}

/// Every kind of lane, on coefficients that suit all of them.
void expectTheReference(const Coded& picture, const PictureFormat& format) {
  const Pixels wanted = picture.reference(format, 32);
  Pixels got;
  ASSERT_TRUE(picture.write(kernels().narrow, format, got)) << picture.described(format);
  ASSERT_EQ(got, wanted) << picture.described(format);
  ASSERT_TRUE(picture.write(kernels().wide, format, got));
  ASSERT_EQ(got, wanted) << picture.described(format);
  ASSERT_TRUE(picture.write(kernels().wrapped, format, got));
  ASSERT_EQ(got, wanted) << picture.described(format);
}

TEST(WritePicture, MakesEveryFormatAtEverySmallSize) {
  unsigned seed = 0;
  for (int width = 1; width <= 40; width += width < 10 ? 1 : 5) {
    for (int height = 1; height <= 12; ++height) {
      for (const int bytesPerPixel : {1, 2, 3}) {
        Dice dice(++seed);
        const Coded picture =
            randomPicture(dice, width, height, dice.below(9), bytesPerPixel == 3 ? 3 : 1, 200);
        for (const int bits : {0, 8}) {
          for (const int step : {1, 2, 8}) {
            ASSERT_NO_FATAL_FAILURE(expectTheReference(picture, {bytesPerPixel, bits, step}));
          }
        }
      }
    }
  }
}

TEST(WritePicture, MakesLargerPictures) {
  unsigned seed = 1000;
  for (const auto& [width, height] :
       {std::pair{63, 40}, {64, 65}, {65, 33}, {200, 3}, {3, 200}, {300, 120}}) {
    for (const int bytesPerPixel : {1, 2, 3}) {
      Dice dice(++seed);
      const Coded picture = randomPicture(dice, width, height, 8, bytesPerPixel == 3 ? 3 : 1, 300);
      for (const int step : {1, 4}) {
        ASSERT_NO_FATAL_FAILURE(expectTheReference(picture, {bytesPerPixel, dice.chance(2) ? 0 : 8, step}));
      }
    }
  }
}

// The narrow one cannot make these, and says so; the others make them, each in its own arithmetic.
TEST(WritePicture, TellsWhenLanesOf16BitsAreNotEnough) {
  unsigned seed = 2000;
  for (const auto& [width, height] : {std::pair{9, 1}, {1, 9}, {8, 8}, {40, 30}, {200, 20}}) {
    for (const int bytesPerPixel : {1, 2, 3}) {
      for (const int step : {1, 2}) {
        for (const int bits : {0, 12}) {
          Dice dice(++seed);
          const Coded picture = randomPicture(dice, width, height, 3, bytesPerPixel == 3 ? 3 : 1, 8191);
          const PictureFormat format = {bytesPerPixel, bits, step};
          Pixels got;
          if (picture.write(kernels().narrow, format, got)) {
            ASSERT_EQ(got, picture.reference(format, 32)) << picture.described(format);
          }
          ASSERT_TRUE(picture.write(kernels().wide, format, got));
          ASSERT_EQ(got, picture.reference(format, 32)) << picture.described(format);
          ASSERT_TRUE(picture.write(kernels().wrapped, format, got));
          ASSERT_EQ(got, picture.reference(format, 16)) << picture.described(format);
        }
      }
    }
  }
  // A low-pass sample of 8191 between high-pass ones of -8191: 8191 + 4096 + 4096 is beyond the limits.
  Samples plane(25, -8191);
  for (std::size_t i = 0; i < plane.size(); i += 2) plane[i] = 8191;
  const Coded grows(5, 5, 1, {plane});
  Pixels got;
  for (const int bytesPerPixel : {1, 2}) {
    for (const int step : {1, 2}) EXPECT_FALSE(grows.write(kernels().narrow, {bytesPerPixel, 0, step}, got));
  }
  EXPECT_FALSE(Coded(5, 5, 1, {plane, plane, plane}).write(kernels().narrow, {3, 0, 1}, got));
  EXPECT_FALSE(Coded(5, 5, 1, {Samples(25), Samples(25), plane}).write(kernels().narrow, {3, 0, 1}, got));
}

TEST(WritePicture, WritesNothingOnceKilled) {
  Dice dice(1);
  for (const int bytesPerPixel : {1, 2, 3}) {
    Coded picture = randomPicture(dice, 20, 20, 2, bytesPerPixel == 3 ? 3 : 1, 100);
    picture.killed = true;
    for (const int step : {1, 2}) {
      Pixels got;
      picture.write(kernels().narrow, {bytesPerPixel, 8, step}, got);
      EXPECT_THAT(got, Each(kGuard));
      picture.write(kernels().wide, {bytesPerPixel, 8, step}, got);
      EXPECT_THAT(got, Each(kGuard));
    }
  }
}

TEST(WritePicture, MakesZerosOfWhatIsNotReadWhenItIsStopped) {
  Dice dice(2);
  Coded picture = randomPicture(dice, 20, 20, 2, 1, 100);
  picture.stopped = true;
  Pixels got;
  EXPECT_TRUE(picture.write(kernels().narrow, {2, 0, 1}, got));
  EXPECT_THAT(got, Each(0));
}

TEST(WritePicture, WritesNothingOfAPictureWithoutPixels) {
  for (const auto& [width, height] : {std::pair{0, 0}, {0, 5}, {5, 0}}) {
    const Coded picture(width, height, 3, {Samples{}, Samples{}, Samples{}});
    for (const int bytesPerPixel : {1, 2, 3}) {
      for (const int step : {1, 2}) {
        Pixels got;
        EXPECT_TRUE(picture.write(kernels().narrow, {bytesPerPixel, 8, step}, got));
        EXPECT_TRUE(picture.write(kernels().wide, {bytesPerPixel, 8, step}, got));
      }
    }
  }
}

TEST(CopyPlane, CopiesTheFirstPlaneAsItStands) {
  Dice dice(3);
  const Samples first = randomPlane(dice, 13, 9, 30'000);
  const Coded picture(13, 9, 2, {first, randomPlane(dice, 13, 9, 100)});
  PictureSource source = picture.source();
  source.shape.inverted = false;
  Samples ints(first.size());
  copyPlane(kernels().wide, source, ints.data());
  EXPECT_EQ(ints, first);

  source = picture.source();
  source.shape.inverted = false;
  std::vector<short> shorts(first.size());
  copyPlane(kernels().wrapped, source, shorts.data());
  EXPECT_EQ(Samples(shorts.begin(), shorts.end()), first);
}

}  // namespace
}  // namespace ei4::test
