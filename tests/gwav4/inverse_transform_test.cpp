#include "gwav4/inverse_transform.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>
#include <vector>

#include "encoder/forward_transform.h"
#include "reference/naive_transform.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using zel::gwav4::invertPlane;
using zel::gwav4::levelsToInvert;
using zel::gwav4::PlaneView;
using zel::gwav4::RowSink;

template <class T>
class CollectedRows final : public RowSink<T> {
 public:
  explicit CollectedRows(int rowLength) : m_Width(static_cast<std::size_t>(rowLength)) {}
  void put(int y, const T* row) override {
    EXPECT_EQ(y, m_Next++);
    samples.insert(samples.end(), row, row + m_Width);
  }
  std::vector<T> samples;

 private:
  std::size_t m_Width;
  int m_Next = 0;
};

template <class T>
std::vector<T> randomSamples(int width, int height, unsigned seed, bool small) {
  Dice dice(seed);
  std::vector<T> samples(static_cast<std::size_t>(width * height));
  for (T& sample : samples) sample = static_cast<T>(small ? dice.between(-255, 255) : dice.any());
  return samples;
}

template <class T>
std::vector<T> invertedByReference(const std::vector<T>& samples, int width, int height, int levels) {
  NaivePlane plane;
  plane.width = width;
  plane.height = height;
  plane.storageBits = 8 * sizeof(T);
  plane.samples.assign(samples.begin(), samples.end());
  invertLevels(plane, levels);
  return {plane.samples.begin(), plane.samples.end()};
}

template <class T>
std::vector<T> invertedInPlace(std::vector<T> samples, int width, int height, int levels) {
  const PlaneView<T> plane = {samples.data(), width, height, static_cast<std::size_t>(width)};
  invertPlane<T>(plane, levelsToInvert(levels, width, height), nullptr);
  return samples;
}

template <class T>
std::vector<T> invertedToRows(std::vector<T> samples, int width, int height, int levels) {
  const PlaneView<T> plane = {samples.data(), width, height, static_cast<std::size_t>(width)};
  CollectedRows<T> rows(width);
  invertPlane<T>(plane, levelsToInvert(levels, width, height), &rows);
  return rows.samples;
}

template <class T>
class InvertPlane : public testing::Test {};
using SampleTypes = testing::Types<short, int>;
TYPED_TEST_SUITE(InvertPlane, SampleTypes);

// Full-range samples, so that sums and stores wrap as well.
TYPED_TEST(InvertPlane, EqualsWholePassesAtEverySmallSizeAndDepth) {
  unsigned seed = 0;
  for (int width = 1; width <= 18; ++width) {
    for (int height = 1; height <= 18; ++height) {
      for (const int levels : {0, 1, 2, 3, 8}) {
        const auto samples = randomSamples<TypeParam>(width, height, ++seed, false);
        const auto wanted = invertedByReference(samples, width, height, levels);
        ASSERT_EQ(invertedInPlace(samples, width, height, levels), wanted)
            << width << " x " << height << ", " << levels;
        ASSERT_EQ(invertedToRows(samples, width, height, levels), wanted)
            << width << " x " << height << ", " << levels;
      }
    }
  }
}

TYPED_TEST(InvertPlane, UndoesTheForwardTransform) {
  using Stored = std::conditional_t<sizeof(TypeParam) == 2, std::int16_t, std::int32_t>;
  for (const auto& [width, height] :
       {std::pair{3, 3}, {4, 4}, {1, 9}, {9, 1}, {2, 2}, {63, 65}, {64, 33}, {129, 70}}) {
    const auto picture = randomSamples<TypeParam>(width, height, 1, true);
    std::vector<Stored> coefficients(picture.begin(), picture.end());
    tools::forwardTransform(coefficients.data(), width, height, 8);
    ASSERT_NE(std::vector<TypeParam>(coefficients.begin(), coefficients.end()), picture);
    EXPECT_EQ(
        invertedInPlace(std::vector<TypeParam>(coefficients.begin(), coefficients.end()), width, height, 8),
        picture)
        << width << " x " << height;
  }
}

TYPED_TEST(InvertPlane, LeavesSamplesBetweenTheRowsAlone) {
  std::vector<TypeParam> samples = {10, 3, 7, 99, 0, 0, 0, 99};
  const PlaneView<TypeParam> plane = {samples.data(), 3, 2, 4};
  invertPlane<TypeParam>(plane, 1, nullptr);
  EXPECT_EQ(samples[3], 99);
  EXPECT_EQ(samples[7], 99);
  // Columns of two: the second sample takes over the first. Then each row as a line of three.
  EXPECT_EQ(samples, (std::vector<TypeParam>{8, 10, 5, 99, 8, 10, 5, 99}));
}

TEST(InvertPlaneEdges, PutsRowsAsTheyAreWithoutALevel) {
  EXPECT_EQ(invertedToRows<short>({1, 2, 3, 4, 5, 6}, 3, 2, 0), (std::vector<short>{1, 2, 3, 4, 5, 6}));
}

TEST(InvertPlaneEdges, AcceptsPlanesWithoutSamples) {
  EXPECT_TRUE(invertedInPlace<int>({}, 0, 0, 8).empty());
  EXPECT_TRUE(invertedInPlace<int>({}, 0, 5, 8).empty());
  EXPECT_TRUE(invertedInPlace<int>({}, 5, 0, 8).empty());
  EXPECT_TRUE(invertedToRows<int>({}, 5, 0, 8).empty());
}

TEST(LevelsToInvert, AreNoMoreThanTheDoublingsThatReachTheLongerSide) {
  EXPECT_EQ(levelsToInvert(8, 1, 1), 0);
  EXPECT_EQ(levelsToInvert(8, 2, 1), 1);
  EXPECT_EQ(levelsToInvert(8, 1, 3), 2);
  EXPECT_EQ(levelsToInvert(8, 4, 4), 2);
  EXPECT_EQ(levelsToInvert(8, 5, 4), 3);
  EXPECT_EQ(levelsToInvert(8, 256, 1), 8);
  EXPECT_EQ(levelsToInvert(8, 65535, 65535), 8);
  EXPECT_EQ(levelsToInvert(3, 65535, 65535), 3);
  EXPECT_EQ(levelsToInvert(0, 100, 100), 0);
}

}  // namespace
}  // namespace ei4::test
