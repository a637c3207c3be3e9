#include "ei4make/preamble.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "driver/convertab.h"
#include "driver/to_int.h"

namespace {

using namespace ei4::tools;
using testing::ElementsAre;
using testing::IsEmpty;

/// A picture of 8-bit samples 0..255, with the stored values from `atZero` on.
Source ramp(const StoredValues& stored) {
  Source source;
  source.picture = {256, 1, 1, 8, {}};
  for (int i = 0; i < 256; ++i) source.picture.pixels.push_back(static_cast<unsigned char>(i));
  source.stored = stored;
  return source;
}

// What a viewer shows: black below the window, white above it, a straight line within; the other way round when low
// values are white.
double shown(double value, const StoredValues& stored) {
  const double grey = std::clamp((value - *stored.level) / *stored.window + 0.5, 0.0, 1.0) * 255;
  return stored.lowIsWhite ? 255 - grey : grey;
}

struct Look {
  double slope;
  int atZero;
  bool lowIsWhite;
};

class StoredPreamble : public testing::TestWithParam<Look> {};

INSTANTIATE_TEST_SUITE_P(Each, StoredPreamble,
                         testing::Values(Look{1, 0, false}, Look{1, 0, true}, Look{-1, 0, false},
                                         Look{-1, 0, true}, Look{2, -128, false}, Look{2, -128, true},
                                         Look{-2, -128, false}, Look{-2, -128, true}, Look{0.5, -128, false},
                                         Look{-0.5, -128, true}));

TEST_P(StoredPreamble, KeepsRescaledValuesAndTheConverterShowsThemRight) {
  StoredValues stored;
  stored.slope = GetParam().slope;
  stored.atZero = GetParam().atZero;
  stored.lowIsWhite = GetParam().lowIsWhite;
  stored.intercept = -10;
  stored.window = 60;
  stored.level = 20;
  Source source = ramp(stored);
  const Ei4Preamble preamble = preambleOfStored(source, {});
  const Convertab table = CreateConvertab(preamble.intercept, preamble.slope, ei4::toInt(preamble.window),
                                          ei4::toInt(preamble.level), 0, 8, 0, 8, 8);
  ASSERT_TRUE(table);
  for (int i = 0; i < 256; ++i) {
    const double value = (i + stored.atZero) * stored.slope + stored.intercept;
    const int sample = source.picture.pixels[static_cast<std::size_t>(i)];
    // The window's edges move to whole samples, of which it has 60, 30 (8.5 grey levels each) or 120 (2.1 each); with
    // slopes of a half the intercept of exchanged samples loses another one.
    const double tolerance = std::fabs(stored.slope) < 1 ? 4.3 : std::fabs(stored.slope) > 1 ? 9 : 1;
    EXPECT_NEAR(static_cast<unsigned char*>(table.get())[sample], shown(value, stored), tolerance) << i;
    EXPECT_NEAR(sample * static_cast<double>(preamble.slope) + static_cast<double>(preamble.intercept), value,
                1e-4);
  }
}

TEST(PreambleOfStored, ShowsTheValuesThatOccurWithoutAWindow) {
  StoredValues stored;
  stored.intercept = -1000;
  Source source = ramp(stored);
  source.picture.pixels = {50, 20, 71};
  source.picture.width = 3;
  const Ei4Preamble preamble = preambleOfStored(source, {});
  EXPECT_EQ(preamble.window, 51);
  const Convertab table = CreateConvertab(preamble.intercept, preamble.slope, ei4::toInt(preamble.window),
                                          ei4::toInt(preamble.level), 0, 8, 0, 8, 8);
  const auto* entries = static_cast<unsigned char*>(table.get());
  EXPECT_EQ(entries[20], 0);
  EXPECT_GT(entries[21], 0);
  EXPECT_LT(entries[70], 255);
  EXPECT_EQ(entries[71], 255);
  source.picture.pixels = {9, 9, 9};
  EXPECT_EQ(preambleOfStored(source, {}).window, 1);
  EXPECT_THAT(source.notes, IsEmpty());
}

TEST(PreambleOfStored, LetsWishesTakeThePlaceOfTheFilesNumbers) {
  StoredValues stored;
  stored.atZero = -128;
  stored.slope = -3;
  stored.intercept = 7;
  stored.window = 60;
  stored.level = 20;
  Source source = ramp(stored);
  const Ei4Preamble preamble = preambleOfStored(source, {2.0F, 10.0F, 30.0F, -40.0F});
  EXPECT_EQ(preamble.slope, 2);
  EXPECT_EQ(preamble.intercept, 10 - 2 * 128);
  EXPECT_EQ(preamble.window, 30);
  EXPECT_EQ(preamble.level, -40);
  EXPECT_EQ(source.picture.pixels[0], 0);  // with this slope nothing is exchanged
}

TEST(PreambleOfStored, ExchangesWideSamplesWithinTheirBits) {
  StoredValues stored;
  stored.lowIsWhite = true;
  Source source;
  source.picture = {2, 1, 2, 12, {0, 0, 0, 0}};
  source.picture.pixels[2] = 1;  // 1 or 256, by the host's order
  const int second = source.picture.pixels[2] + (source.picture.pixels[3] << 8);
  source.stored = stored;
  const Ei4Preamble preamble = preambleOfStored(source, {});
  EXPECT_EQ(source.picture.pixels[0] | source.picture.pixels[1] << 8, 4095);
  EXPECT_EQ(source.picture.pixels[2] | source.picture.pixels[3] << 8, 4095 - second);
  EXPECT_EQ(preamble.slope, -1);
  EXPECT_EQ(preamble.intercept, 4095);
}

TEST(PreambleOfStored, SaysWhatTheWholeNumbersLose) {
  StoredValues stored;
  stored.window = 350.5;
  stored.level = -40;
  Source slightly = ramp(stored);
  preambleOfStored(slightly, {});
  EXPECT_THAT(slightly.notes, ElementsAre("the converter reads whole numbers only: window 350.5 as 350"));

  stored.window = 2000;
  stored.intercept = 6.1e-5;
  Source invisibly = ramp(stored);
  preambleOfStored(invisibly, {});
  EXPECT_THAT(invisibly.notes, IsEmpty());

  stored.slope = 0.001;
  stored.intercept = 0;
  stored.window = 0.2;
  stored.level = 0.1;
  Source badly = ramp(stored);
  preambleOfStored(badly, {});
  EXPECT_THAT(
      badly.notes,
      ElementsAre(
          "the converter reads whole numbers only: window 0.2 as 0, level 0.1 as 0; for the same look "
          "without rescaling state --slope 1 --intercept 0 --window 200 --level 100"));
  Source advised = ramp(stored);
  preambleOfStored(advised, {1.0F, 0.0F, 200.0F, 100.0F});
  EXPECT_THAT(advised.notes, IsEmpty());
}

TEST(PreambleOfStored, RefusesWhatNoPreambleHolds) {
  StoredValues stored;
  stored.window = 1e300;
  stored.level = 0;
  Source window = ramp(stored);
  EXPECT_THROW(preambleOfStored(window, {}), std::range_error);
  stored.window = 1;
  stored.slope = 1e300;
  Source slope = ramp(stored);
  EXPECT_THROW(preambleOfStored(slope, {}), std::range_error);
}

}  // namespace
