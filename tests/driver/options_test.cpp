#include "driver/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "settings_fixture.h"

namespace {

using testing::StrEq;

constexpr const char* kUsage =
    "   -in <inputfile> can be .ei4 or .erblb \n"
    "\tIf input files is erblb then it's required that the exact \n"
    "\tentry which you want to decompress is given as the file at the end of the path \n"
    "   -out can .raw or .jpg in case of doAll the name will be inherited just the extension used \n"
    "   -jpgquality 0-100 necessary if creating .jpg \n"
    "   -blob processes specific image from blob \n"
    "   -doAll same as -blob but processes all possible entries \n"
    "   -h shows this print \n";

class Options : public ei4::test::SettingsTest {
 protected:
  // Reads the words behind the program's name. The settings point into string literals.
  static void read(std::initializer_list<const char*> options) {
    std::vector<const char*> words = {"ei4convert"};
    words.insert(words.end(), options);
    words.push_back(nullptr);
    ReadArgs(static_cast<int>(words.size()) - 1, words.data());
  }

  static std::string printed(std::initializer_list<const char*> options) {
    testing::internal::CaptureStdout();
    read(options);
    return testing::internal::GetCapturedStdout();
  }
};

}  // namespace

TEST_F(Options, OfAnEmptyCommandLineOnlyTurnTheTableOff) {
  bWL = 1;
  bInvert = 1;
  read({});
  EXPECT_EQ(bWL, 0);
  EXPECT_EQ(bInvert, 1);
  bWL = 1;
  const char* const nothing[] = {nullptr};
  ReadArgs(0, nothing);
  EXPECT_EQ(bWL, 0);
}

TEST_F(Options, TakePaths) {
  read({"-in", "a.ei4", "-out", "b.raw", "-ima", "c.txt"});
  EXPECT_THAT(szInFile, StrEq("a.ei4"));
  EXPECT_THAT(szOutFile, StrEq("b.raw"));
  EXPECT_THAT(szReportFile, StrEq("c.txt"));
}

TEST_F(Options, TakeTheWordBehindThemWhateverItIs) {
  read({"-in", "-invert", "-out", "-in"});
  EXPECT_THAT(szInFile, StrEq("-invert"));
  EXPECT_THAT(szOutFile, StrEq("-in"));
  EXPECT_EQ(bInvert, 0);
}

TEST_F(Options, TakeSizes) {
  read({"-size", "512x256", "-geom", "64x48"});
  EXPECT_EQ(csSrc, CSize(512, 256));
  EXPECT_EQ(bSrcSize, 1);
  EXPECT_EQ(csDst, CSize(64, 48));
  EXPECT_EQ(bDstSize, 1);
}

TEST_F(Options, KeepTheNumbersOfARefusedGeometry) {
  read({"-geom", "512X512", "-size", "7 x 9"});
  EXPECT_EQ(bDstSize, 0);
  EXPECT_EQ(csDst, CSize(512, 512));
  EXPECT_EQ(bSrcSize, 0);
  EXPECT_EQ(csSrc, CSize(7, 0));
}

TEST_F(Options, KeepTheFlagOfAnEarlierGeometry) {
  read({"-geom", "512x256", "-geom", "100"});
  EXPECT_EQ(bDstSize, 1);
  EXPECT_EQ(csDst, CSize(100, 256));
}

TEST_F(Options, TakePixelFormats) {
  read({"-incolor", "M16", "-outcolor", "M08"});
  EXPECT_EQ(nInputColorType, COLOR_TYPE_M16);
  EXPECT_EQ(bInColorType, 1);
  EXPECT_EQ(nOutputColorType, COLOR_TYPE_M08);
  EXPECT_EQ(bOutColorType, 1);
}

TEST_F(Options, TakeEveryOtherPixelFormatForColour) {
  for (const char* name : {"RGB", "m08", "M08 ", "", "M"}) {
    nInputColorType = COLOR_TYPE_M16;
    read({"-incolor", name});
    EXPECT_EQ(nInputColorType, COLOR_TYPE_C08) << name;
  }
}

TEST_F(Options, TurnTheTableOnWhenAllFourWindowNumbersParse) {
  read({"-window", "400", "-level", "40", "-slope", "2.5", "-intercept", "-1024"});
  EXPECT_EQ(nWindow, 400);
  EXPECT_EQ(nLevel, 40);
  EXPECT_EQ(dSlope, 2.5);
  EXPECT_EQ(dIntercept, -1024.0);
  EXPECT_EQ(bWL, 1);
}

TEST_F(Options, LeaveTheTableOffWhenOneOfTheFourIsMissing) {
  read({"-window", "400", "-level", "40"});
  EXPECT_EQ(bWL, 0);
  read({"-level", "40", "-slope", "1", "-intercept", "0"});
  EXPECT_EQ(bWL, 0);
  read({"-window", "400", "-slope", "1", "-intercept", "0"});
  EXPECT_EQ(bWL, 0);
  read({"-window", "400", "-level", "40", "-intercept", "0"});
  EXPECT_EQ(bWL, 0);
  read({"-window", "400", "-level", "40", "-slope", "1"});
  EXPECT_EQ(bWL, 0);
}

TEST_F(Options, LetTheLastWindowNumberDecide) {
  read({"-window", "400", "-level", "40", "-slope", "1", "-intercept", "0", "-window", "x"});
  EXPECT_EQ(bWL, 0);
  EXPECT_EQ(nWindow, 400);
  read({"-window", "x", "-level", "40", "-slope", "1", "-intercept", "0", "-window", "300"});
  EXPECT_EQ(bWL, 1);
  EXPECT_EQ(nWindow, 300);
}

TEST_F(Options, RoundRealsToSinglePrecision) {
  read({"-slope", "0.1", "-intercept", "inf"});
  EXPECT_EQ(dSlope, static_cast<double>(0.1F));
  EXPECT_EQ(dIntercept, INFINITY);
}

TEST_F(Options, GiveAFailedRealTheLastOneOfEitherOption) {
  dIntercept = 9;
  read({"-slope", "2", "-intercept", "x"});
  EXPECT_EQ(dIntercept, 2.0);
  read({"-intercept", "3", "-slope", "y", "-intercept", "z"});
  EXPECT_EQ(dSlope, 3.0);
  EXPECT_EQ(dIntercept, 3.0);
}

TEST_F(Options, GiveAFailedRealZeroWhenThereWasNone) {
  dSlope = 9;
  read({"-slope", "x"});
  EXPECT_EQ(dSlope, 0.0);
}

TEST_F(Options, TakeSwitchesWithoutAValue) {
  read({"-invert", "-in", "a.raw", "-blob", "-out", "b.raw"});
  EXPECT_EQ(bInvert, 1);
  EXPECT_TRUE(bBlob);
  EXPECT_THAT(szInFile, StrEq("a.raw"));
  EXPECT_THAT(szOutFile, StrEq("b.raw"));
}

TEST_F(Options, TakeASwitchAsTheLastWord) {
  read({"-in", "a.raw", "-invert"});
  EXPECT_EQ(bInvert, 1);
  EXPECT_THAT(szInFile, StrEq("a.raw"));
}

TEST_F(Options, TakeTheQuality) {
  read({"-jpgquality", "90"});
  EXPECT_EQ(m_nJpgQuality, 90);
  EXPECT_EQ(m_bHasJpgQuality, 1);
}

TEST_F(Options, WithdrawTheQualityWhenALaterOneFails) {
  read({"-jpgquality", "90", "-jpgquality", "x"});
  EXPECT_EQ(m_nJpgQuality, 90);
  EXPECT_EQ(m_bHasJpgQuality, 0);
}

TEST_F(Options, PrintTheUsageForEachHelp) {
  EXPECT_EQ(printed({"-help"}), kUsage);
  EXPECT_EQ(helpOnly, 1);
  EXPECT_EQ(printed({"-help", "x", "-help"}), std::string(kUsage) + kUsage);
}

TEST_F(Options, SkipTheWordBehindHelp) {
  EXPECT_EQ(printed({"-help", "-help", "-in", "a.raw"}), kUsage);
  EXPECT_THAT(szInFile, StrEq("a.raw"));
  EXPECT_EQ(printed({"-help", "-in", "a.ei4"}), kUsage);  // "a.ei4" is the next option, an unknown one
  EXPECT_THAT(szInFile, StrEq("a.raw"));
}

TEST_F(Options, TakeHelpAsAValue) {
  EXPECT_EQ(printed({"-in", "-help"}), "");
  EXPECT_EQ(helpOnly, 0);
}

TEST_F(Options, SkipUnknownWordsWithTheWordBehindThem) {
  EXPECT_EQ(printed({"-h", "-help", "-doAll", "-invert", "nonsense", "-blob", "-in", "a.raw"}), "");
  EXPECT_EQ(helpOnly, 0);
  EXPECT_EQ(bInvert, 0);
  EXPECT_FALSE(bBlob);
  EXPECT_THAT(szInFile, StrEq("a.raw"));
}

TEST_F(Options, OfTheLastWordHaveANullValue) {
  szInFile = szOutFile = szReportFile = "x";
  read({"-in"});
  read({"-out"});
  read({"-ima"});
  EXPECT_EQ(szInFile, nullptr);
  EXPECT_EQ(szOutFile, nullptr);
  EXPECT_EQ(szReportFile, nullptr);

  csSrc = csDst = CSize(3, 4);
  nWindow = nLevel = m_nJpgQuality = 5;
  m_bHasJpgQuality = 1;
  dSlope = dIntercept = 6;
  for (const char* option : {"-size", "-geom", "-window", "-level", "-slope", "-intercept", "-jpgquality"}) {
    read({option});
  }
  EXPECT_EQ(csSrc, CSize(3, 4));
  EXPECT_EQ(csDst, CSize(3, 4));
  EXPECT_EQ(nWindow, 5);
  EXPECT_EQ(nLevel, 5);
  EXPECT_EQ(m_nJpgQuality, 5);
  EXPECT_EQ(m_bHasJpgQuality, 0);
  EXPECT_EQ(dSlope, 0.0);
  EXPECT_EQ(dIntercept, 0.0);
  EXPECT_EQ(bWL, 0);

  nInputColorType = nOutputColorType = COLOR_TYPE_M16;
  read({"-incolor"});
  read({"-outcolor"});
  EXPECT_EQ(nInputColorType, COLOR_TYPE_C08);
  EXPECT_EQ(nOutputColorType, COLOR_TYPE_C08);
  EXPECT_EQ(bInColorType + bOutColorType, 2);
}

TEST_F(Options, AreComparedAsWholeWords) {
  read({"-i", "a", "-inn", "b", "-IN", "c", "in", "d"});
  EXPECT_EQ(szInFile, nullptr);
}

TEST(Color2BitsUsed, IsSixteenForM16Alone) {
  EXPECT_EQ(Color2BitsUsed(COLOR_TYPE_M16), 16);
  EXPECT_EQ(Color2BitsUsed(COLOR_TYPE_M08), 8);
  EXPECT_EQ(Color2BitsUsed(COLOR_TYPE_C08), 8);
  EXPECT_EQ(Color2BitsUsed(static_cast<COLOR_TYPE>(3)), 8);
}
