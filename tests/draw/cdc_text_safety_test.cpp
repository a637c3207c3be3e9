// Texts come from outside: they are drawn, and nothing else is done with them.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "draw/cdc.h"
#include "draw/file_watch.h"
#include "drawing_fixture.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::Picture;

constexpr int kWidth = 400;
constexpr int kHeight = 120;

// What a text changes on a picture of its own.
std::vector<std::uint16_t> drawn(const std::string& text, int x = 10, int y = 40) {
  const Picture picture(kWidth, kHeight);
  CDC dc(picture.image(), picture.info());
  dc.TextOut(x, y, text.c_str());
  return picture.pixels();
}

// The box around all pixels that a text changes: right and bottom are the first beyond it.
CRect inkOf(const std::string& text, int x = 10, int y = 40) {
  const auto before = Picture(kWidth, kHeight).pixels();
  const auto after = drawn(text, x, y);
  CRect ink(kWidth, kHeight, 0, 0);
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] == after[i]) continue;
    const long column = static_cast<long>(i / 4) % kWidth;
    const long row = static_cast<long>(i / 4) / kWidth;
    ink = CRect(static_cast<int>(std::min(ink.left, column)), static_cast<int>(std::min(ink.top, row)),
                static_cast<int>(std::max(ink.right, column + 1)),
                static_cast<int>(std::max(ink.bottom, row + 1)));
  }
  return ink;
}

// What drawing libraries make of names: files to take the text, pictures or commands from.
std::vector<std::string> textsThatName(const std::string& path) {
  std::vector<std::string> texts;
  for (const char* front : {"@",         " @",      "\t@",   "@ ",   "\n@",  "a\n@",    "\r\n@",
                            "\r@",       "\x01@",   "@@",    "\\@",  "'@",   "\"@",     "label:@",
                            "caption:@", "text:",   "msl:",  "mvg:", "svg:", "file://", "ephemeral:",
                            "inline:",   "pango:@", "|cat ", "^",    "-",    "%[file:", "image over 0,0 0,0 ",
                            "url(",      ""}) {
    texts.push_back(front + path);
  }
  return texts;
}

class TextSafety : public ei4::test::Drawing {
 protected:
  ei4::test::TempFolder folder;
};

TEST_F(TextSafety, OpensNoFile) {
  const std::string path = folder.path("secret.txt");
  std::ofstream(path) << "secret";
  ei4::test::FileWatch watch(folder.path("."));
  ASSERT_TRUE(watch.works());
  { const std::ifstream control(path); }
  ASSERT_TRUE(watch.sawAnything()) << "the watch sees what is opened";

  for (const std::string& text : textsThatName(path)) {
    const auto while_there = drawn(text);
    EXPECT_FALSE(watch.sawAnything()) << text;
    EXPECT_FALSE(while_there == Picture(kWidth, kHeight).pixels() && text.find('\r') != 0)
        << "drawn: " << text;
  }
}

TEST_F(TextSafety, ShowsTheSameWhetherAFileExistsOrNot) {
  const std::string path = folder.path("note");
  for (const std::string& text : textsThatName(path)) {
    std::ofstream(path) << "x";
    const auto there = drawn(text);
    std::filesystem::remove(path);
    EXPECT_TRUE(drawn(text) == there) << text;
  }
}

TEST_F(TextSafety, StartsNoProgram) {
  const std::string path = folder.path("made");
  rusage before{};
  getrusage(RUSAGE_CHILDREN, &before);
  for (const std::string& text :
       {"|touch " + path, "`touch " + path + "`", "$(touch " + path + ")", "a;touch " + path,
        "a\n|touch " + path, "msl:<image><write filename=\"" + path + "\"/></image>", "ephemeral:" + path,
        "show:" + path, "https://127.0.0.1/\";touch " + path + ";\"",
        "%[fx:system(\"touch " + path + "\")]"}) {
    drawn(text);
    EXPECT_FALSE(std::filesystem::exists(path)) << text;
  }
  rusage after{};
  getrusage(RUSAGE_CHILDREN, &after);
  EXPECT_EQ(after.ru_minflt, before.ru_minflt) << "a child has ended";
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD) << "a child is running";
}

TEST_F(TextSafety, ExpandsNoProperties) {
  const Picture other(kWidth, kHeight);
  SetImageProperty(other.image(), "comment", "a very long comment");
  SetImageProperty(other.image(), "label", "@a label");
  CopyMagickString(other.image()->magick_filename, "elsewhere.png", MaxTextExtent);
  other.image()->x_resolution = 300;
  char* const expanded = InterpretImageProperties(other.info(), other.image(), "%[comment] %c %l %f");
  ASSERT_STREQ(expanded, "a very long comment a very long comment @a label elsewhere.png")
      << "there to be found";
  RelinquishMagickMemory(expanded);

  const Picture plain(kWidth, kHeight);
  CDC onOther(other.image(), other.info());
  CDC onPlain(plain.image(), plain.info());
  int y = 12;
  for (const char* text : {"%c %l %f %x %[comment]", "%[fx:w*h] %w %h %n %%", "%[*] %[label] %[EXIF:*] %#",
                           "%d %e %i %m %o %p %q %r %s %t %z", "&lt;&amp;&#65; \\n \\t \\\\ \\x41"}) {
    onOther.TextOut(10, y, text);
    onPlain.TextOut(10, y, text);
    EXPECT_TRUE(other.pixels() == plain.pixels()) << text;
    y += 20;
  }
}

// Every character takes its cell, 7.2 pixels wide: nothing is made of pairs of them.
TEST_F(TextSafety, KeepsEveryCharacterOfAnEscape) {
  for (const std::string escape :
       {"%w", "%%", "%n", "\\n", "\\@", "&lt;", "%[fx:1]", "${HOME}", "$HOME", "~"}) {
    const CRect ink = inkOf(escape + "H");
    const long begin = 10 + static_cast<long>(7.2 * static_cast<double>(escape.size()));
    EXPECT_GE(ink.right, begin + 4) << escape;
    EXPECT_LE(ink.right, begin + 9) << escape;
    EXPECT_LE(ink.bottom, 45) << "a single line: " << escape;
  }
}

TEST_F(TextSafety, IsNoDrawingLanguage) {
  for (const std::string text :
       {"rectangle 0,0 399,119", "' fill red rectangle 0,0 399,119 '", "\" rectangle 0,0 399,119",
        "push graphic-context", "text 0,90 'x'", "image over 0,0 0,0 'x'", "} rectangle 0,0 399,119 {",
        "#<svg><rect width=\"9\"/></svg>"}) {
    const CRect ink = inkOf(text);
    EXPECT_FALSE(ink.IsRectEmpty()) << text;
    EXPECT_GE(ink.top, 28) << text;
    EXPECT_LE(ink.bottom, 46) << text;
    EXPECT_GE(ink.left, 9) << text;
  }
  for (const char* end : {"\n", "\r\n"}) {
    const CRect ink = inkOf(std::string("a") + end + "rectangle 0,0 399,119" + end + "'b", 10, 40);
    EXPECT_GE(ink.top, 28);
    EXPECT_LE(ink.bottom, 46 + 2 * 15) << "three lines";
  }
}

TEST_F(TextSafety, LeavesTheStateForOtherFigures) {
  dc.TextOut(10, 40, "'@x %w\n\" rectangle 0,0 9,9");
  const auto before = picture.pixels();
  dc.MoveTo(100, 100);
  dc.LineTo(120, 110);
  const auto after = picture.pixels();
  long changed = 0;
  for (std::size_t i = 0; i < before.size(); i += 4) changed += before[i] != after[i] ? 1 : 0;
  EXPECT_GT(changed, 20);
  EXPECT_LT(changed, 100);
}

TEST_F(TextSafety, GivesControlBytesTheBlanksPlace) {
  const auto blank = drawn("a b");
  for (int byte = 1; byte < 0x20; ++byte) {
    if (byte == '\n' || byte == '\r') continue;
    EXPECT_TRUE(drawn(std::string("a") + static_cast<char>(byte) + "b") == blank) << byte;
  }
  EXPECT_TRUE(drawn("a\x7f"
                    "b") == blank);
}

TEST_F(TextSafety, EndsAtAZeroByte) {
  const std::string text("ab\0@cd", 6);
  EXPECT_TRUE(drawn(text) == drawn("ab"));
}

// Of a line that is no UTF-8 each byte is a character of Latin 1.
TEST_F(TextSafety, ReadsWhatIsNoUtf8AsLatin1) {
  EXPECT_TRUE(drawn("\xC3(") == drawn("\xC3\x83(")) << "a first byte alone";
  EXPECT_TRUE(drawn("x\xE9") == drawn("x\xC3\xA9")) << "at the end";
  EXPECT_TRUE(drawn("\xA9 \xB5") == drawn("\xC2\xA9 \xC2\xB5")) << "later bytes alone";
}

// Two characters follow what may be anything: they and it stay on their line.
TEST_F(TextSafety, KeepsMalformedAndRareCharactersOnTheirLine) {
  const CRect plain = inkOf("HH");
  for (const std::string odd : {"\xC0\xAF",
                                "\xE0\x80\xAF",
                                "\xF0\x80\x80\xAF",  // overlong forms of "/"
                                "\xC0\x8A",
                                "\xC1\x80",  // of a line feed and of "@"
                                "\xED\xA0\x80",
                                "\xED\xA0\x80\xED\xB0\x80",  // halves of a pair
                                "\xF4\x90\x80\x80",
                                "\xF8\x88\x80\x80\x80",
                                "\xFC\x84\x80\x80\x80\x80",
                                "\xFE",
                                "\xFF",  // too high
                                "\xF0\x9F\x98\x80",
                                "\xF0\x9D\x94\xB8",  // four bytes
                                "\xE2\x82\xAC",
                                "\xD7\x90",
                                "\xE2\x80\xAE",
                                "\xEF\xBB\xBF",
                                "\xEF\xBF\xBF",
                                "\xE2\x80\xA8",  // valid
                                "\xE2\x82",
                                "\xF0\x9F\x98",
                                "\x80\x80\x80\x80"}) {
    const CRect ink = inkOf(odd + "HH");
    EXPECT_GE(ink.right, plain.right - 1) << odd;
    EXPECT_LE(ink.right, plain.right + 8 * 7) << odd;
    EXPECT_GE(ink.top, 26) << odd;
    EXPECT_LE(ink.bottom, 46) << odd;
    inkOf("HH" + odd);  // at the end, where bytes are missing
  }
}

// The last byte of 4000, on a line far down, shows.
TEST_F(TextSafety, IsDrawnUpTo4000Bytes) {
  const auto last = drawn("x");
  int lineHeight = 1;
  while (lineHeight < 40 && drawn("\nx", 10, 40 - lineHeight) != last) ++lineHeight;
  ASSERT_LT(lineHeight, 40);
  const std::string lines(3999, '\n');
  const int first = 40 - lineHeight * static_cast<int>(lines.size());
  EXPECT_TRUE(drawn(lines + "x", 10, first) == last);
  EXPECT_TRUE(drawn(lines + "xy", 10, first) == last) << "and no more";
}

TEST_F(TextSafety, OfEveryByteIsDrawnCleanly) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
  for (int i = 0; i < 40; ++i) {
    std::rotate(all.begin(), all.begin() + 7 * i % 255, all.end());
    dc.TextOut(i - 20, 3 * i, all.c_str());
  }
  SUCCEED();
}

}  // namespace
