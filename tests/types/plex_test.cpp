#include "types/plex.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace {

std::uintptr_t address(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

}  // namespace

TEST(Plex, PutsTheElements16BytesIntoTheBlock) {
  CPlex* head = nullptr;
  CPlex* const block = CPlex::Create(head, 3, 24);
  EXPECT_EQ(address(block->data()) - address(block), 16U);
  EXPECT_EQ(address(block->data()) % 16, 0U);
  std::memset(block->data(), 0xAB, std::size_t{3} * 24);  // a sanitizer sees when that is too much
  EXPECT_EQ(block->pNext, nullptr);
  block->FreeDataChain();
}

TEST(Plex, LinksANewBlockInFrontOfTheOthers) {
  CPlex* head = nullptr;
  CPlex* const first = CPlex::Create(head, 1, 8);
  EXPECT_EQ(head, first);
  CPlex* const second = CPlex::Create(head, 1, 8);
  EXPECT_EQ(head, second);
  EXPECT_EQ(second->pNext, first);
  EXPECT_EQ(first->pNext, nullptr);
  head->FreeDataChain();
}

// That all of it is freed, and nothing twice, is what the leak check of the sanitized build looks at.
TEST(Plex, FreesABlockAndThoseBehindIt) {
  CPlex* head = nullptr;
  CPlex::Create(head, 1, 8);
  CPlex* const second = CPlex::Create(head, 1, 8);
  CPlex* const third = CPlex::Create(head, 1, 8);
  third->pNext = nullptr;
  second->FreeDataChain();
  third->FreeDataChain();
}

TEST(Plex, FreesALongChainWithoutADeepStack) {
  CPlex* head = nullptr;
  for (int i = 0; i < 300000; ++i) CPlex::Create(head, 1, 1);
  head->FreeDataChain();
}

TEST(Plex, MakesABlockWithoutElements) {
  CPlex* head = nullptr;
  CPlex::Create(head, 0, 8)->FreeDataChain();
}

TEST(Plex, RefusesElementsBeyondAllMemoryAndLeavesTheChainAlone) {
  CPlex* head = nullptr;
  CPlex* const block = CPlex::Create(head, 1, 8);
  EXPECT_THROW(CPlex::Create(head, 0xFFFFFFFFU, 0xFFFFFFFFU), std::bad_alloc);
  EXPECT_THROW(CPlex::Create(head, 0x80000001U, 0xFFFFFFFFU), std::bad_alloc);
  EXPECT_EQ(head, block);
  head->FreeDataChain();
}
