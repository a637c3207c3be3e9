// A drawing context on one picture, and a second picture of the same pixels for what is expected.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "draw/cdc.h"
#include "draw/drawing_globals.h"
#include "picture.h"

namespace ei4::test {

class Drawing : public testing::Test {
 protected:
  void TearDown() override { iVerbose = 0; }

  /// What the calls print when tracing is on.
  static std::string traceOf(const std::function<void()>& calls) {
    testing::internal::CaptureStdout();
    iVerbose = 1;
    calls();
    iVerbose = 0;
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
  }

  /// The two pictures are equal in every 16-bit value, and no longer as they were made.
  void expectSame() const {
    EXPECT_TRUE(picture.pixels() == expected.pixels());
    EXPECT_EQ(picture.state(), expected.state());
    EXPECT_FALSE(picture.pixels() == untouched.pixels()) << "nothing was drawn";
  }

  void expectUntouched() const { EXPECT_TRUE(picture.pixels() == untouched.pixels()); }

  static constexpr const char* kBlack = "#000000";

  Picture untouched{160, 120};
  Picture expected{160, 120};
  Picture picture{160, 120};
  CDC dc{picture.image(), picture.info()};
};

}  // namespace ei4::test
