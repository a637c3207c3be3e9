#include "driver/library_failure.h"

#include <gtest/gtest.h>
#include <magick/MagickCore.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t kMuch = std::size_t{1} << 62;  // more than any address space

// What ends in a process of its own; its standard output joins the error output, which the tests look at.
template <class Action>
void endIn(Action action) {
  std::fflush(stdout);
  dup2(STDERR_FILENO, STDOUT_FILENO);
  ei4::endRunWhenLibraryFails();
  action();
  std::_Exit(99);
}

void failFatally() {
  ExceptionInfo* const exception = AcquireExceptionInfo();
  ThrowException(exception, ResourceLimitFatalError, "no memory", nullptr);
  CatchException(exception);
}

TEST(LibraryFailure, EndsTheRunAsAFailedConversion) {
  EXPECT_EXIT(endIn(failFatally), testing::ExitedWithCode(1), "^\n$");
}

TEST(LibraryFailure, EndsItAsItIsSettled) {
  EXPECT_EXIT(endIn([] {
                ei4::setEndAfterLibraryFailure(0, false);
                failFatally();
              }),
              testing::ExitedWithCode(0), "^$");
}

TEST(LibraryFailure, KeepsWhatWasPrintedBefore) {
  EXPECT_EXIT(endIn([] {
                ei4::setEndAfterLibraryFailure(0, false);
                std::printf("64 48\n");
                failFatally();
              }),
              testing::ExitedWithCode(0), "^64 48\n$");
}

TEST(LibraryFailure, LeavesLargeBlocksToTheLibrary) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer ends a program that asks for so much";
#endif
  EXPECT_EXIT(endIn([] { std::_Exit(AcquireMagickMemory(kMuch) == nullptr ? 7 : 8); }),
              testing::ExitedWithCode(7), "^$");
}

}  // namespace
