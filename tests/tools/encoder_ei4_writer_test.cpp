#include "encoder/ei4_writer.h"

#include <gmock/gmock.h>

#include "encoder/encode_error.h"

namespace {

using namespace ei4::tools;
using testing::ElementsAre;

const std::vector<unsigned char> kStream = {'G', 'W'};

// -1024 is 0xC4800000, 1 is 0x3F800000, 400 is 0x43C80000, 40 is 0x42200000.
TEST(Ei4Writer, PutsTheFourNumbersInFrontOfTheStream) {
  const Ei4Preamble preamble{-1024, 1, 400, 40, 24};
  EXPECT_THAT(writeEi4(preamble, kStream), ElementsAre(0, 0, 0, 0, 0, 0, 24, 0, 0, 0, 0x80, 0xC4, 0, 0, 0x80,
                                                       0x3F, 0, 0, 0xC8, 0x43, 0, 0, 0x20, 0x42, 'G', 'W'));
}

TEST(Ei4Writer, MovesTheStreamBehindALongerPreamble) {
  Ei4Preamble preamble;
  preamble.length = 300;
  const std::vector<unsigned char> file = writeEi4(preamble, kStream);
  ASSERT_EQ(file.size(), 302U);
  EXPECT_EQ(file[6], 300 - 256);
  EXPECT_EQ(file[7], 1);
  EXPECT_EQ(file[299], 0);
  EXPECT_EQ(file[300], 'G');
}

TEST(Ei4Writer, RefusesLengthsThatNoReaderTakes) {
  Ei4Preamble preamble;
  preamble.length = 23;
  EXPECT_THROW(writeEi4(preamble, kStream), EncodeError);
  preamble.length = 65536;
  EXPECT_THROW(writeEi4(preamble, kStream), EncodeError);
}

// Stored values 0..4095 become -1024..3071: the window's edges are -1024 and 3072.
TEST(FullRange, CoversAllStoredValues) {
  Ei4Preamble preamble;
  preamble.intercept = -1024;
  showFullRange(preamble, 12);
  EXPECT_EQ(preamble.window, 4096);
  EXPECT_EQ(preamble.level, 1024);
}

TEST(FullRange, FollowsANegativeSlope) {
  Ei4Preamble preamble;
  preamble.slope = -2;
  showFullRange(preamble, 8);
  EXPECT_EQ(preamble.window, 512);
  EXPECT_EQ(preamble.level, -256);
}

}  // namespace
