#include "types/list.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <set>
#include <type_traits>
#include <vector>

namespace {

using Numbers = CList<int, int>;

static_assert(!std::is_copy_constructible_v<Numbers> && !std::is_copy_assignable_v<Numbers>);

std::vector<int> forwards(const Numbers& numbers) {
  std::vector<int> seen;
  for (POSITION at = numbers.GetHeadPosition(); at != nullptr;) seen.push_back(numbers.GetNext(at));
  return seen;
}

std::vector<int> backwards(const Numbers& numbers) {
  std::vector<int> seen;
  for (POSITION at = numbers.GetTailPosition(); at != nullptr;) seen.push_back(numbers.GetPrev(at));
  return seen;
}

// The links of both directions and the count agree.
void expectNumbers(const Numbers& numbers, const std::vector<int>& expected) {
  EXPECT_EQ(forwards(numbers), expected);
  EXPECT_EQ(backwards(numbers), std::vector<int>(expected.rbegin(), expected.rend()));
  EXPECT_EQ(numbers.GetCount(), static_cast<int>(expected.size()));
  EXPECT_EQ(numbers.IsEmpty(), expected.empty());
}

// Counts 1, 2, 3, ... from the head.
void fill(Numbers& numbers, int count) {
  for (int i = 1; i <= count; ++i) numbers.AddTail(i);
}

}  // namespace

TEST(List, StartsEmpty) {
  const Numbers numbers;
  expectNumbers(numbers, {});
  EXPECT_EQ(numbers.GetHeadPosition(), nullptr);
  EXPECT_EQ(numbers.GetTailPosition(), nullptr);
}

TEST(List, AddsAtBothEnds) {
  Numbers numbers;
  numbers.AddTail(2);
  numbers.AddTail(3);
  numbers.AddHead(1);
  expectNumbers(numbers, {1, 2, 3});
  EXPECT_EQ(numbers.GetHead(), 1);
  EXPECT_EQ(numbers.GetTail(), 3);
}

TEST(List, AddsAtTheHeadOfAnEmptyList) {
  Numbers numbers;
  numbers.AddHead(1);
  expectNumbers(numbers, {1});
  EXPECT_EQ(numbers.GetHeadPosition(), numbers.GetTailPosition());
}

TEST(List, GivesThePlaceOfWhatItAdded) {
  Numbers numbers;
  const POSITION tail = numbers.AddTail(1);
  const POSITION head = numbers.AddHead(2);
  EXPECT_EQ(numbers.GetTailPosition(), tail);
  EXPECT_EQ(numbers.GetHeadPosition(), head);
  EXPECT_EQ(numbers.GetAt(tail), 1);
}

TEST(List, WalksOneElementAStep) {
  Numbers numbers;
  fill(numbers, 2);
  POSITION at = numbers.GetHeadPosition();
  EXPECT_EQ(numbers.GetNext(at), 1);
  EXPECT_EQ(at, numbers.GetTailPosition());
  EXPECT_EQ(numbers.GetNext(at), 2);
  EXPECT_EQ(at, nullptr);
  at = numbers.GetTailPosition();
  EXPECT_EQ(numbers.GetPrev(at), 2);
  EXPECT_EQ(at, numbers.GetHeadPosition());
  EXPECT_EQ(numbers.GetPrev(at), 1);
  EXPECT_EQ(at, nullptr);
}

TEST(List, LetsElementsBeChangedInPlace) {
  Numbers numbers;
  fill(numbers, 4);
  numbers.GetHead() = 10;
  numbers.GetTail() = 40;
  POSITION at = numbers.GetHeadPosition();
  numbers.GetNext(at);
  numbers.GetAt(at) = 20;
  POSITION back = numbers.GetTailPosition();
  numbers.GetPrev(back);
  numbers.SetAt(back, 30);
  expectNumbers(numbers, {10, 20, 30, 40});
  numbers.GetNext(at) = 21;
  numbers.GetPrev(back) = 31;
  expectNumbers(numbers, {10, 21, 31, 40});
}

TEST(List, InsertsBesideAnElement) {
  Numbers numbers;
  const POSITION middle = numbers.AddTail(5);
  numbers.InsertBefore(middle, 3);
  numbers.InsertAfter(middle, 7);
  numbers.InsertBefore(middle, 4);
  numbers.InsertAfter(middle, 6);
  expectNumbers(numbers, {3, 4, 5, 6, 7});
}

TEST(List, InsertsAtTheEndsWithoutAPlace) {
  Numbers numbers;
  numbers.InsertBefore(nullptr, 2);
  numbers.InsertBefore(nullptr, 1);
  numbers.InsertAfter(nullptr, 3);
  expectNumbers(numbers, {1, 2, 3});
}

TEST(List, RemovesAnywhere) {
  Numbers numbers;
  fill(numbers, 5);
  POSITION at = numbers.Find(3);
  numbers.RemoveAt(at);
  expectNumbers(numbers, {1, 2, 4, 5});
  EXPECT_EQ(numbers.RemoveHead(), 1);
  EXPECT_EQ(numbers.RemoveTail(), 5);
  expectNumbers(numbers, {2, 4});
  numbers.RemoveAt(numbers.GetHeadPosition());
  numbers.RemoveAt(numbers.GetTailPosition());
  expectNumbers(numbers, {});
}

TEST(List, RemovesAllAndServesAgain) {
  Numbers numbers;
  fill(numbers, 25);
  numbers.RemoveAll();
  expectNumbers(numbers, {});
  numbers.RemoveAll();
  fill(numbers, 3);
  expectNumbers(numbers, {1, 2, 3});
}

TEST(List, FindsTheFirstEqualElementBehindAPlace) {
  Numbers numbers;
  const POSITION first = numbers.AddTail(7);
  numbers.AddTail(8);
  const POSITION second = numbers.AddTail(7);
  EXPECT_EQ(numbers.Find(7), first);
  EXPECT_EQ(numbers.Find(7, first), second);
  EXPECT_EQ(numbers.Find(7, second), nullptr);
  EXPECT_EQ(numbers.Find(9), nullptr);
  EXPECT_EQ(Numbers().Find(7), nullptr);
}

TEST(List, TakesItsNodesFromOneBlockSideBySide) {
  Numbers numbers(8);
  std::vector<std::uintptr_t> places(8);
  for (std::uintptr_t& place : places) place = reinterpret_cast<std::uintptr_t>(numbers.AddTail(0));
  for (std::size_t i = 2; i < places.size(); ++i) {
    EXPECT_EQ(places[i] - places[i - 1], places[1] - places[0]);
  }
}

TEST(List, UsesRemovedNodesAgain) {
  Numbers numbers(4);
  std::set<POSITION> places;
  for (int i = 0; i < 4; ++i) places.insert(numbers.AddTail(i));
  for (int i = 0; i < 100; ++i) {
    numbers.RemoveHead();
    places.insert(numbers.AddTail(i));
  }
  EXPECT_EQ(places.size(), 4U);
}

TEST(List, NeverMovesAnElement) {
  Numbers numbers(1);
  const int* const first = &numbers.GetAt(numbers.AddTail(42));
  fill(numbers, 1000);
  EXPECT_EQ(first, &numbers.GetHead());
  EXPECT_EQ(*first, 42);
}

TEST(List, WorksWithAnyBlockSize) {
  for (const int blockSize : {-3, 0, 1, 2, 3, 100}) {
    Numbers numbers(blockSize);
    fill(numbers, 7);
    expectNumbers(numbers, {1, 2, 3, 4, 5, 6, 7});
  }
}

// The leak check of the sanitized build sees nodes and blocks that stay behind.
TEST(List, LeavesWhatItsElementsPointAt) {
  const auto first = std::make_unique<int>(1);
  const auto second = std::make_unique<int>(2);
  {
    CList<int*, int*> pointers;
    pointers.AddTail(first.get());
    pointers.AddTail(second.get());
    pointers.RemoveAt(pointers.GetHeadPosition());
  }
  EXPECT_EQ(*first, 1);
  EXPECT_EQ(*second, 2);
}

TEST(List, EndsTheLivesOfItsElements) {
  const auto shared = std::make_shared<int>(1);
  {
    CList<std::shared_ptr<int>, const std::shared_ptr<int>&> owners(2);
    for (int i = 0; i < 5; ++i) owners.AddTail(shared);
    EXPECT_EQ(shared.use_count(), 6);
    EXPECT_EQ(owners.RemoveHead(), shared);
    EXPECT_EQ(shared.use_count(), 5);
  }
  EXPECT_EQ(shared.use_count(), 1);
}
