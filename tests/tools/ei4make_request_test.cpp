#include "ei4make/request.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace ei4::tools;

using Words = std::vector<std::string_view>;
MakeRequest parsed(const Words& words) { return parseRequest(words); }

TEST(ParseRequest, TakesTwoFilesWithTheDefaults) {
  const MakeRequest request = parsed({"a.pgm", "b.ei4"});
  EXPECT_EQ(request.input, "a.pgm");
  EXPECT_EQ(request.output, "b.ei4");
  EXPECT_FALSE(request.raw);
  EXPECT_FALSE(request.bits);
  EXPECT_FALSE(request.frame);
  EXPECT_FALSE(request.slope);
  EXPECT_FALSE(request.intercept);
  EXPECT_FALSE(request.bareStream);
  EXPECT_EQ(request.magic, Magic::GW41);
  EXPECT_FALSE(request.levels);
  EXPECT_EQ(request.lowestBit, 0);
  EXPECT_EQ(request.preambleLength, 24);
}

TEST(ParseRequest, TakesEveryOption) {
  const MakeRequest request = parsed(
      {"--size",      "640x480",     "--format", "M16",        "in", "--bits",   "12",    "--lowest-bit",
       "3",           "--magic",     "GW40",     "--levels",   "5",  "--window", "400.5", "--level=-40",
       "--slope=0.5", "--intercept", "-1024",    "--preamble", "32", "out"});
  ASSERT_TRUE(request.raw);
  EXPECT_EQ(request.raw->width, 640);
  EXPECT_EQ(request.raw->height, 480);
  EXPECT_EQ(request.raw->bytesPerPixel, 2);
  EXPECT_EQ(request.bits, 12);
  EXPECT_EQ(request.lowestBit, 3);
  EXPECT_EQ(request.magic, Magic::GW40);
  EXPECT_EQ(request.levels, 5);
  EXPECT_EQ(request.window, 400.5F);
  EXPECT_EQ(request.level, -40.0F);
  EXPECT_EQ(request.slope, 0.5F);
  EXPECT_EQ(request.intercept, -1024.0F);
  EXPECT_EQ(request.preambleLength, 32);
  EXPECT_EQ(request.input, "in");
  EXPECT_EQ(request.output, "out");
}

TEST(ParseRequest, TakesAFrame) { EXPECT_EQ(parsed({"--frame", "12", "a", "b"}).frame, 12); }

TEST(ParseRequest, TakesFileNamesThatLookLikeOptions) {
  EXPECT_EQ(parsed({"--", "-in", "--help"}).output, "--help");
}

TEST(ParseRequest, AsksForNothingElseBesideHelpAndVersion) {
  EXPECT_TRUE(parsed({"--help"}).wantsHelp);
  EXPECT_TRUE(parsed({"-h"}).wantsHelp);
  EXPECT_TRUE(parsed({"--version"}).wantsVersion);
}

class WrongUsage : public testing::TestWithParam<Words> {};

TEST_P(WrongUsage, IsRefused) { EXPECT_THROW(parsed(GetParam()), UsageError); }

INSTANTIATE_TEST_SUITE_P(
    Each, WrongUsage,
    testing::Values(Words{}, Words{"one"}, Words{"one", "two", "three"}, Words{"--nonsense", "1", "a", "b"},
                    Words{"a", "b", "--bits"}, Words{"--bits", "0", "a", "b"},
                    Words{"--bits", "17", "a", "b"}, Words{"--bits", "8x", "a", "b"},
                    Words{"--bits=", "a", "b"}, Words{"--bits", "99999999999999999999", "a", "b"},
                    Words{"--levels", "9", "a", "b"}, Words{"--lowest-bit", "32", "a", "b"},
                    Words{"--lowest-bit", "-1", "a", "b"}, Words{"--magic", "GW42", "a", "b"},
                    Words{"--format", "M32", "--size", "1x1", "a", "b"}, Words{"--size", "1x1", "a", "b"},
                    Words{"--format", "M08", "a", "b"}, Words{"--size", "1x", "--format", "M08", "a", "b"},
                    Words{"--size", "0x1", "--format", "M08", "a", "b"},
                    Words{"--size", "1x65536", "--format", "M08", "a", "b"},
                    Words{"--slope", "nan", "a", "b"}, Words{"--slope", "inf", "a", "b"},
                    Words{"--slope", "1e99", "a", "b"}, Words{"--window", "wide", "a", "b"},
                    Words{"--preamble", "23", "a", "b"}, Words{"--frame", "0", "a", "b"},
                    Words{"--frame", "2147483648", "a", "b"},
                    Words{"--frame", "1", "--size", "1x1", "--format", "M08", "a", "b"},
                    Words{"--preamble", "65536", "a", "b"}, Words{"--stream", "--window", "1", "a", "b"},
                    Words{"--stream", "--preamble", "24", "a", "b"}));

TEST(UsageText, SaysFirstWhatTheToolDoes) {
  EXPECT_EQ(usageText().substr(0, usageText().find('\n')),
            "Makes a wavelet-compressed .ei4 file of a DICOM, PNG, PGM, PPM or raw picture.");
}

TEST(UsageText, NamesEveryOption) {
  for (const std::string_view option :
       {"--frame", "--size", "--format", "--bits", "--lowest-bit", "--levels", "--magic", "--stream",
        "--slope", "--intercept", "--window", "--level ", "--preamble", "--help", "--version"}) {
    EXPECT_NE(usageText().find(option), std::string_view::npos) << option;
  }
}

}  // namespace
