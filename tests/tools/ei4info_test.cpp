// ei4info run as a program, and its JSON read back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <set>

#include "blob/blob_writer.h"
#include "ei4info/command_line.h"
#include "ei4info/json_report.h"
#include "ei4info/text_report.h"
#include "ei4info_images.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::Bytes;
using ei4::test::codedStream;
using ei4::test::ei4;
using ei4::test::first;
using ei4::test::TempFolder;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

struct Finished {
  int status = -1;
  std::string out;
  std::string err;
};

class Ei4infoTest : public testing::Test {
 protected:
  /// `words` as a shell reads them, in the folder of the files.
  Finished run(const std::string& words) const {
    const std::string line = "cd '" + folder.path("") + "' && " EI4INFO_PROGRAM " " + words + " >'" +
                             printed.path("out") + "' 2>'" + printed.path("err") + "'";
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text("out"), text("err")};
  }

  TempFolder folder;

 private:
  std::string text(const char* name) const {
    const auto bytes = printed.read(name);
    return {bytes.begin(), bytes.end()};
  }
  TempFolder printed;
};

std::set<std::string> keysOf(const json& object) {
  std::set<std::string> keys;
  for (const auto& item : object.items()) keys.insert(item.key());
  return keys;
}

using Keys = std::set<std::string>;
const Keys kKeys = {"file",   "bytes",  "decodes",   "faults", "preamble",
                    "header", "coding", "directory", "sizes"};

TEST_F(Ei4infoTest, ExplainsItselfOnRequest) {
  for (const char* option : {"--help", "-h"}) {
    const Finished help = run(option);
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, StartsWith("ei4info: shows what is in .ei4 images"));
    EXPECT_EQ(help.err, "");
  }
  EXPECT_EQ(run("--version").out, "ei4info " EI4_VERSION "\n");
}

TEST_F(Ei4infoTest, ExitsWithTwoOnWrongUsage) {
  for (const char* words : {"", "--frob", "--json", "-x a.ei4"}) {
    const Finished done = run(words);
    EXPECT_EQ(done.status, 2) << words;
    EXPECT_EQ(done.out, "");
    EXPECT_THAT(done.err, StartsWith("ei4info: "));
  }
}

TEST_F(Ei4infoTest, PrintsTheFactsForPeople) {
  folder.write("a.ei4", ei4(codedStream(64, 48, 2, 12)));
  const Finished done = run("a.ei4");
  EXPECT_EQ(done.status, 0);
  EXPECT_EQ(done.err, "");
  EXPECT_THAT(done.out, StartsWith("a.ei4: "));
  EXPECT_THAT(done.out, HasSubstr(" bytes, decodes completely\n"));
  EXPECT_THAT(done.out, HasSubstr("\n  preamble   24 bytes: intercept 0, slope 1, window 256, level 128\n"));
  EXPECT_THAT(done.out,
              HasSubstr("\n  header     GW41, 64 x 48 pixels, 2 bytes a pixel, 12 bits a sample\n"));
  EXPECT_THAT(done.out, HasSubstr("\n  coding     2 levels, top bit "));
  EXPECT_THAT(done.out, HasSubstr("\n  directory  complete; "));
  EXPECT_THAT(done.out, HasSubstr("64 x 48  64 and wider, or none"));
}

TEST_F(Ei4infoTest, GoesOnBehindWhatItCannotRead) {
  folder.write("a.ei4", ei4(codedStream(30, 20)));
  folder.write("cut.ei4", first(ei4(codedStream(30, 20)), 200));
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  const Finished done = run("missing . pipe cut.ei4 a.ei4");
  EXPECT_EQ(done.status, 1);
  EXPECT_THAT(done.err, HasSubstr("ei4info: missing: No such file or directory\n"));
  EXPECT_THAT(done.err, HasSubstr("ei4info: .: Is a directory\n"));
  EXPECT_THAT(done.err, HasSubstr("ei4info: pipe: is no regular file\n"));
  EXPECT_THAT(done.out, HasSubstr("cut.ei4: 200 bytes, decodes partly\n  fault      the data ends within"));
  EXPECT_THAT(done.out, HasSubstr("\na.ei4: "));
}

TEST_F(Ei4infoTest, PrintsAnObjectForOneFileAndAnArrayForSeveral) {
  folder.write("a.ei4", ei4(codedStream(64, 48, 3)));
  folder.write("b.ei4", Bytes(10));
  const json one = json::parse(run("--json a.ei4").out);
  ASSERT_TRUE(one.is_object());
  EXPECT_EQ(keysOf(one), kKeys);
  EXPECT_EQ(keysOf(one["preamble"]), (Keys{"bytes", "intercept", "slope", "window", "level"}));
  EXPECT_EQ(keysOf(one["header"]), (Keys{"magic", "bytesPerPixel", "bitsPerPixel", "width", "height"}));
  EXPECT_EQ(keysOf(one["coding"]), (Keys{"levels", "topBit"}));
  EXPECT_EQ(keysOf(one["directory"]),
            (Keys{"state", "chunks", "bits", "codedBytes", "trailingBytes", "orders"}));
  EXPECT_EQ(one["directory"]["orders"].size(), 9U);  // three planes of the orders 0 to 2
  for (const json& order : one["directory"]["orders"]) {
    EXPECT_EQ(keysOf(order), (Keys{"plane", "order", "bits", "significance", "refinement"}));
    EXPECT_EQ(keysOf(order["significance"]), (Keys{"chunks", "bits"}));
  }
  for (const json& size : one["sizes"]) {
    EXPECT_EQ(keysOf(size), (Keys{"factor", "width", "height", "wantedFrom", "wantedTo", "readBudget",
                                  "bytesRead", "accepted"}));
  }
  EXPECT_EQ(one["header"]["magic"], "GW41");
  EXPECT_EQ(one["header"]["width"], 64);
  EXPECT_EQ(one["decodes"], "completely");
  EXPECT_EQ(one["sizes"][0]["factor"], 0);
  EXPECT_TRUE(one["sizes"][0]["wantedTo"].is_null());

  const Finished several = run("--json a.ei4 b.ei4 missing");
  EXPECT_EQ(several.status, 1);
  const json array = json::parse(several.out);
  ASSERT_EQ(array.size(), 3U);
  EXPECT_EQ(array[0], one);
  EXPECT_EQ(array[1]["decodes"], "no");
  EXPECT_EQ(array[1]["bytes"], 10);
  EXPECT_TRUE(array[1]["header"].is_null());
  EXPECT_EQ(keysOf(array[2]), kKeys);
  EXPECT_TRUE(array[2]["bytes"].is_null());
}

TEST_F(Ei4infoTest, ReadsContainerEntriesByTheConvertersNames) {
  const Bytes file = ei4(codedStream(64, 48));
  const auto whole = std::span(file);
  ei4::tools::BlobWriter().entry("b.t.ei4", whole.first(300)).writeTo(folder.path("initial.erblb"));
  ei4::tools::BlobWriter()
      .entry("a.ei4", whole)
      .entry("b.f.ei4", whole.subspan(300))
      .writeTo(folder.path("full.erblb"));
  const Finished done = run("--blob --json ./a.ei4 ./b.ei4");
  EXPECT_EQ(done.status, 0);
  json array = json::parse(done.out);
  EXPECT_EQ(array[0]["decodes"], "completely");
  array[0].erase("file");
  array[1].erase("file");
  EXPECT_EQ(array[0], array[1]);
  const Finished missing = run("-b ./c.ei4 no/c.ei4");
  EXPECT_EQ(missing.status, 1);
  EXPECT_THAT(missing.err, HasSubstr("./c.ei4: is no entry"));
  EXPECT_THAT(missing.err, HasSubstr("no/c.ei4: is in no container"));
}

TEST(Ei4infoJson, IsValidWhateverANameOrAMagicHolds) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string path = std::string("a\"\\") + static_cast<char>(byte) + "b";
    Bytes file = ei4(codedStream(10, 10));
    file[25] = static_cast<unsigned char>(byte);
    const json parsed = json::parse(ei4::info::jsonReport(path, ei4::test::inspect(file)));
    if (byte < 0x80) {
      EXPECT_EQ(parsed["file"], path);
    } else {
      EXPECT_EQ(parsed["file"],
                "a\"\\\xEF\xBF\xBD"
                "b");
    }
    const auto shown = ei4::info::textReport(path, ei4::test::inspect(file));
    EXPECT_EQ(shown.find('\x1b'), std::string::npos);
  }
}

TEST(Ei4infoNumbers, ThatAreNoneAreNullInJsonAndNamedInText) {
  ei4::tools::Ei4Preamble preamble{
      .intercept = std::nanf(""), .slope = HUGE_VALF, .window = 0.1F, .level = -3e38F};
  const auto facts = ei4::test::inspect(ei4::tools::writeEi4(preamble, codedStream(10, 10)));
  const json parsed = json::parse(ei4::info::jsonReport("x", facts));
  EXPECT_TRUE(parsed["preamble"]["intercept"].is_null());
  EXPECT_TRUE(parsed["preamble"]["slope"].is_null());
  EXPECT_EQ(parsed["preamble"]["window"], 0.1);
  EXPECT_EQ(parsed["preamble"]["level"], -3e38);
  EXPECT_THAT(ei4::info::textReport("x", facts),
              HasSubstr("intercept nan, slope inf, window 0.1, level -3e+38\n"));
}

TEST(Ei4infoJson, HasEveryKeyThatTheHelpNames) {
  const json parsed = json::parse(ei4::info::jsonReport("x", ei4::test::inspect(ei4(codedStream(20, 20)))));
  const std::string help(ei4::info::usageText());
  for (const std::string& key : keysOf(parsed)) EXPECT_THAT(help, HasSubstr("\n  " + key + " "));
  for (const char* part : {"preamble", "header", "coding", "directory"}) {
    for (const std::string& key : keysOf(parsed[part])) EXPECT_THAT(help, HasSubstr(key));
  }
  for (const std::string& key : keysOf(parsed["sizes"][0])) EXPECT_THAT(help, HasSubstr(key));
}

}  // namespace
