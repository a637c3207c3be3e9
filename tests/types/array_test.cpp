#include "types/array.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <type_traits>
#include <vector>

#include "types/point_size.h"

namespace {

using testing::Each;
using testing::ElementsAre;

using Points = CArray<CPoint, CPoint>;
using Numbers = CArray<int, const int&>;

static_assert(sizeof(Points) == sizeof(void*) + 4 * sizeof(int), "a pointer, three ints and padding");
static_assert(!std::is_copy_constructible_v<Points> && !std::is_copy_assignable_v<Points>);

template <class TYPE, class ARG>
std::vector<TYPE> contents(const CArray<TYPE, ARG>& array) {
  return {array.GetData(), array.GetData() + array.GetSize()};
}

void fill(Numbers& numbers, int size) {
  numbers.SetSize(size);
  for (int i = 0; i < size; ++i) numbers[i] = i + 1;
}

}  // namespace

TEST(Array, StartsEmptyAndWithoutMemory) {
  const Points points;
  EXPECT_EQ(points.GetSize(), 0);
  EXPECT_EQ(points.GetUpperBound(), -1);
  EXPECT_EQ(points.GetAllocatedSize(), 0);
  EXPECT_EQ(points.GetData(), nullptr);
  EXPECT_TRUE(points.IsEmpty());
}

TEST(Array, FirstAllocatesExactlyItsSizeInZeros) {
  Points points;
  points.SetSize(40, -1);
  EXPECT_EQ(points.GetSize(), 40);
  EXPECT_EQ(points.GetUpperBound(), 39);
  EXPECT_EQ(points.GetAllocatedSize(), 40);
  EXPECT_FALSE(points.IsEmpty());
  EXPECT_THAT(contents(points), Each(CPoint(0, 0)));
}

TEST(Array, FirstAllocatesExactlyItsSizeWithAStepToo) {
  Points points;
  points.SetSize(3, 100);
  EXPECT_EQ(points.GetAllocatedSize(), 3);
}

TEST(Array, GrowsByAnEighthOfItsSize) {
  Points points;
  points.SetSize(40);
  points.SetSize(41, -1);
  EXPECT_EQ(points.GetSize(), 41);
  EXPECT_EQ(points.GetAllocatedSize(), 45);
}

TEST(Array, GrowsByAnEighthWithin4And1024) {
  const struct {
    int size;
    int step;
  } rows[] = {{1, 4},       {31, 4},      {32, 4},      {39, 4},      {40, 5},
              {8191, 1023}, {8192, 1024}, {8200, 1024}, {80000, 1024}};
  for (const auto& row : rows) {
    Numbers numbers;
    numbers.SetSize(row.size);
    numbers.SetSize(row.size + 1);
    EXPECT_EQ(numbers.GetAllocatedSize(), row.size + row.step) << row.size;
  }
}

TEST(Array, TakesTheStepFromTheSizeButAddsItToTheRoom) {
  Numbers numbers;
  numbers.SetSize(80);
  numbers.SetSize(16);
  numbers.SetSize(81);
  EXPECT_EQ(numbers.GetAllocatedSize(), 84);  // 16 elements: a step of 4, on a room of 80
}

TEST(Array, GrowsToTheSizeAskedForWhenTheStepIsNotEnough) {
  Numbers numbers;
  numbers.SetSize(40);
  numbers.SetSize(46);
  EXPECT_EQ(numbers.GetAllocatedSize(), 46);
}

TEST(Array, KeepsAStepUntilItIsChanged) {
  Numbers numbers;
  numbers.SetSize(10, 7);
  numbers.SetSize(11);
  EXPECT_EQ(numbers.GetAllocatedSize(), 17);
  numbers.SetSize(18, -1);
  EXPECT_EQ(numbers.GetAllocatedSize(), 24);
  numbers.SetSize(25, 0);  // back to the eighth, which is 4 here
  EXPECT_EQ(numbers.GetAllocatedSize(), 28);
}

TEST(Array, KeepsAStepGivenWithASizeOf0) {
  Numbers numbers;
  numbers.SetSize(0, 9);
  numbers.SetSize(1);
  numbers.SetSize(2);
  EXPECT_EQ(numbers.GetAllocatedSize(), 10);
}

TEST(Array, TakesOnlyWhatItNeedsWithAStepBelowMinus1) {
  Numbers numbers;
  numbers.SetSize(10, -100);
  numbers.SetSize(11);
  EXPECT_EQ(numbers.GetAllocatedSize(), 11);
}

TEST(Array, KeepsItsElementsAndAppendsZerosWhenItGrows) {
  Numbers numbers;
  fill(numbers, 3);
  numbers.SetSize(5);
  EXPECT_THAT(contents(numbers), ElementsAre(1, 2, 3, 0, 0));
}

TEST(Array, KeepsItsMemoryWhenItShrinks) {
  Numbers numbers;
  fill(numbers, 5);
  const int* const data = numbers.GetData();
  numbers.SetSize(2);
  EXPECT_EQ(numbers.GetSize(), 2);
  EXPECT_EQ(numbers.GetAllocatedSize(), 5);
  EXPECT_EQ(numbers.GetData(), data);
}

TEST(Array, HoldsZerosWhereItGrowsBackWithinItsMemory) {
  Numbers numbers;
  fill(numbers, 5);
  const int* const data = numbers.GetData();
  numbers.SetSize(2);
  numbers.SetSize(4);
  EXPECT_THAT(contents(numbers), ElementsAre(1, 2, 0, 0));
  EXPECT_EQ(numbers.GetData(), data);
}

TEST(Array, HoldsZerosInPointsToo) {
  Points points;
  points.Add(CPoint(1, 2));
  points.Add(CPoint(3, 4));
  points.SetSize(1);
  points.SetSize(2);
  EXPECT_THAT(contents(points), ElementsAre(CPoint(1, 2), CPoint(0, 0)));
}

TEST(Array, FreesItsMemoryForASizeOf0OrLess) {
  for (const int size : {0, -1, INT_MIN}) {
    Numbers numbers;
    fill(numbers, 5);
    numbers.SetSize(size);
    EXPECT_EQ(numbers.GetSize(), 0);
    EXPECT_EQ(numbers.GetAllocatedSize(), 0);
    EXPECT_EQ(numbers.GetData(), nullptr);
  }
  Numbers numbers;
  fill(numbers, 5);
  numbers.RemoveAll();
  EXPECT_EQ(numbers.GetData(), nullptr);
  fill(numbers, 2);
  EXPECT_THAT(contents(numbers), ElementsAre(1, 2));
}

TEST(Array, AddsBehindTheLast) {
  Points points;
  EXPECT_EQ(points.Add(CPoint(1, 2)), 0);
  EXPECT_EQ(points.GetAllocatedSize(), 1);
  EXPECT_EQ(points.Add(CPoint(3, 4)), 1);
  EXPECT_EQ(points.GetAllocatedSize(), 5);
  EXPECT_THAT(contents(points), ElementsAre(CPoint(1, 2), CPoint(3, 4)));
}

TEST(Array, AddsAnElementOfItsOwnThatMovesMeanwhile) {
  Numbers numbers;
  fill(numbers, 3);
  numbers.Add(numbers[1]);
  EXPECT_THAT(contents(numbers), ElementsAre(1, 2, 3, 2));
}

TEST(Array, GrowsUpToAnIndexThatIsSet) {
  Numbers numbers;
  numbers.SetAtGrow(2, 7);
  EXPECT_THAT(contents(numbers), ElementsAre(0, 0, 7));
  numbers.SetAtGrow(0, 5);
  EXPECT_THAT(contents(numbers), ElementsAre(5, 0, 7));
}

TEST(Array, GivesAccessByIndex) {
  Points points;
  points.SetSize(2);
  points.SetAt(0, CPoint(1, 2));
  points[1] = CPoint(3, 4);
  points.ElementAt(1).x = 5;
  EXPECT_EQ(points.GetAt(0), CPoint(1, 2));
  const Points& constant = points;
  EXPECT_EQ(constant[1], CPoint(5, 4));
  EXPECT_EQ(points.GetData() + 1, &points[1]);
  EXPECT_EQ(constant.GetData(), points.GetData());
}

TEST(Array, RefusesCountsBeyondAnIntAndKeepsItsElements) {
  Numbers numbers;
  fill(numbers, 3);
  EXPECT_THROW(numbers.SetSize(4, INT_MAX), std::bad_alloc);
  EXPECT_THROW(numbers.SetAtGrow(INT_MAX, 1), std::bad_alloc);
  EXPECT_THAT(contents(numbers), ElementsAre(1, 2, 3));
  EXPECT_EQ(numbers.GetAllocatedSize(), 3);
}
