// The tool from its words to its files.
#include "ei4make/make.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "ei4make/dicom_picture.h"
#include "ei4make/png_picture.h"
#include "gwav4/decompressor.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using Bytes = std::vector<unsigned char>;

class Ei4Make : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("ei4make_test_" + std::to_string(::getpid()) + "_" +
                                           testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / name).string(); }

  void write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
  }

  [[nodiscard]] Bytes read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  int run(const std::vector<std::string>& words) {
    out_.str("");
    err_.str("");
    const std::vector<std::string_view> views(words.begin(), words.end());
    return ei4::tools::runEi4make(views, out_, err_);
  }

  [[nodiscard]] std::string out() const { return out_.str(); }
  [[nodiscard]] std::string err() const { return err_.str(); }

 private:
  fs::path folder_;
  std::ostringstream out_;
  std::ostringstream err_;
};

float floatAt(const Bytes& file, std::size_t offset) {
  float value = 0;
  std::memcpy(&value, file.data() + offset, 4);
  return value;
}

Bytes decoded(const Bytes& file, std::size_t streamOffset) {
  const unsigned char* stream = file.data() + streamOffset;
  zel::gwav4::CGWavDecompressor decompressor(stream, file.size() - streamOffset - 16, 0, 0);
  Bytes pixels(static_cast<std::size_t>(decompressor.getXSize() * decompressor.getYSize() *
                                        decompressor.getBytesPerPixel()));
  EXPECT_EQ(decompressor.decompress(pixels.data(), pixels.size(), 0), 0);
  return pixels;
}

TEST_F(Ei4Make, MakesALosslessFileOfAPgm) {
  write("in.pgm", "P5 3 2 255\nabcdef");
  EXPECT_EQ(run({path("in.pgm"), path("out.ei4")}), 0);
  EXPECT_THAT(out(), IsEmpty());
  EXPECT_THAT(err(), IsEmpty());
  const Bytes file = read("out.ei4");
  EXPECT_EQ(decoded(file, 24), (Bytes{'a', 'b', 'c', 'd', 'e', 'f'}));
  EXPECT_EQ(file[6], 24);
  EXPECT_EQ(floatAt(file, 8), 0);     // intercept
  EXPECT_EQ(floatAt(file, 12), 1);    // slope
  EXPECT_EQ(floatAt(file, 16), 256);  // the window over all 8-bit values ...
  EXPECT_EQ(floatAt(file, 20), 128);  // ... and its centre
  EXPECT_EQ(std::string(file.begin() + 24, file.begin() + 28), "GW41");
}

TEST_F(Ei4Make, MakesRawPixelsWithTheirNumbers) {
  write("in.raw", std::string("\x01\x00\xFF\x0F", 4));
  EXPECT_EQ(run({"--size", "2x1", "--format", "M16", "--bits", "12", "--slope", "1", "--intercept", "-1024",
                 "--window", "400", "--level", "40", path("in.raw"), path("out.ei4")}),
            0);
  const Bytes file = read("out.ei4");
  EXPECT_EQ(decoded(file, 24), (Bytes{1, 0, 0xFF, 0x0F}));
  EXPECT_EQ(file[24 + 4], 2);
  EXPECT_EQ(file[24 + 5], 12);
  EXPECT_EQ(floatAt(file, 8), -1024);
  EXPECT_EQ(floatAt(file, 16), 400);
  EXPECT_EQ(floatAt(file, 20), 40);
}

TEST_F(Ei4Make, MakesABareStreamOfColour) {
  write("in.ppm", "P6 2 1 255\nrgbRGB");
  EXPECT_EQ(run({"--stream", "--magic", "GW40", path("in.ppm"), path("out.gw")}), 0);
  const Bytes stream = read("out.gw");
  EXPECT_EQ(std::string(stream.begin(), stream.begin() + 4), "GW40");
  EXPECT_EQ(decoded(stream, 0), (Bytes{'r', 'g', 'b', 'R', 'G', 'B'}));
}

TEST_F(Ei4Make, LeavesLowBitsOutOnRequest) {
  std::string picture = "P5 64 64 255\n";
  for (int i = 0; i < 64 * 64; ++i) picture += static_cast<char>(i * i % 251);
  write("in.pgm", picture);
  EXPECT_EQ(run({path("in.pgm"), path("lossless.ei4")}), 0);
  EXPECT_EQ(run({"--lowest-bit", "3", path("in.pgm"), path("lossy.ei4")}), 0);
  EXPECT_LT(read("lossy.ei4").size() * 3, read("lossless.ei4").size() * 2);
}

TEST_F(Ei4Make, TakesTheNumberOfLevelsAndWarnsOfBlankReductions) {
  write("in.pgm", "P5 64 64 255\n" + std::string(4096, 'x'));
  EXPECT_EQ(run({"--levels", "1", path("in.pgm"), path("out.ei4")}), 0);
  EXPECT_THAT(err(), HasSubstr("come out blank"));
  EXPECT_EQ(read("out.ei4")[24 + 17], 1);
  EXPECT_EQ(run({path("in.pgm"), path("out.ei4")}), 0);
  EXPECT_THAT(err(), IsEmpty());
  EXPECT_EQ(read("out.ei4")[24 + 17], 3);
}

TEST_F(Ei4Make, WritesALongerPreambleAndSaysWhereItCanBeRead) {
  write("in.pgm", "P5 1 1 255\nx");
  EXPECT_EQ(run({"--preamble", "40", path("in.pgm"), path("out.ei4")}), 0);
  EXPECT_THAT(err(), HasSubstr("inside a container only"));
  const Bytes file = read("out.ei4");
  EXPECT_EQ(file[6], 40);
  EXPECT_EQ(decoded(file, 40), Bytes{'x'});
}

TEST_F(Ei4Make, FailsWithOneNamingTheFile) {
  write("bad.pgm", "P5 9 9 255\nx");
  write("deep.pgm", "P5 1 1 255\nx");
  EXPECT_EQ(run({path("none.pgm"), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("none.pgm: No such file"));
  EXPECT_EQ(run({path("bad.pgm"), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("bad.pgm: the file ends before its last pixel"));
  EXPECT_EQ(run({"--bits", "6", path("deep.pgm"), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("the value 120 does not fit 6 bits"));
  EXPECT_FALSE(fs::exists(path("out.ei4")));
  EXPECT_EQ(run({path("deep.pgm"), path("no/such/folder.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("folder.ei4: No such file"));
}

TEST_F(Ei4Make, GoesByTheContentAndNotByTheName) {
  write("picture.dcm", "P5 1 1 255\nx");
  EXPECT_EQ(run({path("picture.dcm"), path("out.ei4")}), 0);
  EXPECT_EQ(decoded(read("out.ei4"), 24), Bytes{'x'});
  write("text.pgm", "no picture at all");
  EXPECT_EQ(run({path("text.pgm"), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("neither DICOM nor PNG nor a binary PGM (P5) or PPM (P6)"));
}

// A PNG of one grey pixel of 7, and the mark of a DICOM file with nothing behind it.
TEST_F(Ei4Make, ReadsWhatThisBuildCanAndSaysWhatItCannot) {
  const Bytes png = {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48,
                     0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00,
                     0x00, 0x3A, 0x7E, 0x9B, 0x55, 0x00, 0x00, 0x00, 0x0A, 0x49, 0x44, 0x41, 0x54, 0x78,
                     0xDA, 0x63, 0x60, 0x07, 0x00, 0x00, 0x09, 0x00, 0x08, 0x8D, 0xAB, 0xB9, 0x01, 0x00,
                     0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
  write("one.png", std::string(png.begin(), png.end()));
  EXPECT_EQ(run({path("one.png"), path("out.ei4")}), ei4::tools::kReadsPng ? 0 : 1);
  if (ei4::tools::kReadsPng) {
    EXPECT_EQ(decoded(read("out.ei4"), 24), Bytes{7});
  } else {
    EXPECT_EQ(err(),
              "ei4make: " + path("one.png") + ": this ei4make was built without libpng and reads no PNG\n");
  }
  write("mark.dcm", std::string(128, '\0') + "DICM");
  EXPECT_EQ(run({path("mark.dcm"), path("out.ei4")}), 1);
  EXPECT_EQ(err(),
            "ei4make: " + path("mark.dcm") +
                (ei4::tools::kReadsDicom ? ": the DICOM file states no transfer syntax\n"
                                         : ": this ei4make was built without DCMTK and reads no DICOM\n"));
}

TEST_F(Ei4Make, RefusesAFrameOfAFileThatHasNone) {
  write("in.pgm", "P5 1 1 255\nx");
  EXPECT_EQ(run({"--frame", "1", path("in.pgm"), path("out.ei4")}), 0);
  EXPECT_EQ(run({"--frame", "2", path("in.pgm"), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("only a DICOM file can have several frames"));
}

TEST_F(Ei4Make, FailsWithOneWhenTheInputIsAFolder) {
  EXPECT_EQ(run({path(""), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("Is a directory"));
}

TEST_F(Ei4Make, FailsWithOneWhenTheLevelsDoNotFit) {
  write("in.pgm", "P5 2 1 255\nab");
  EXPECT_EQ(run({"--levels", "8", path("in.pgm"), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("use fewer levels"));
}

TEST_F(Ei4Make, NeverWritesOverItsInput) {
  const std::string picture = "P5 1 1 255\nx";
  write("in.pgm", picture);
  fs::create_hard_link(path("in.pgm"), path("twin.pgm"));
  fs::create_symlink(path("in.pgm"), path("link.pgm"));
  for (const char* output : {"in.pgm", "twin.pgm", "link.pgm"}) {
    EXPECT_EQ(run({path("in.pgm"), path(output)}), 1);
    EXPECT_THAT(err(), HasSubstr(std::string(output) + ": input and output are the same file"));
  }
  EXPECT_EQ(read("in.pgm"), Bytes(picture.begin(), picture.end()));
}

TEST_F(Ei4Make, RefusesAnInfiniteWindowOrLevel) {
  write("in.pgm", "P5 1 1 255\nx");
  EXPECT_EQ(run({"--slope", "3e38", path("in.pgm"), path("out.ei4")}), 1);
  EXPECT_THAT(err(), HasSubstr("infinite"));
  EXPECT_EQ(run({"--slope", "3e38", "--window", "1", path("in.pgm"), path("out.ei4")}), 1);
  EXPECT_EQ(run({"--slope", "3e38", "--level", "1", path("in.pgm"), path("out.ei4")}), 1);
  EXPECT_FALSE(fs::exists(path("out.ei4")));
  EXPECT_EQ(run({"--slope", "3e38", "--window", "1", "--level", "2", path("in.pgm"), path("out.ei4")}), 0);
  EXPECT_EQ(floatAt(read("out.ei4"), 12), 3e38F);
}

TEST_F(Ei4Make, FailsWithOneWhenItsAnswerIsLost) {
  for (const std::string_view option : {"--help", "--version"}) {
    std::ofstream full("/dev/full");
    std::ostringstream complaint;
    EXPECT_EQ(ei4::tools::runEi4make(std::span(&option, 1), full, complaint), 1);
    EXPECT_EQ(complaint.str(), "ei4make: the answer cannot be written\n");
  }
}

TEST_F(Ei4Make, AnswersWrongUsageWithTwo) {
  EXPECT_EQ(run({}), 2);
  EXPECT_THAT(err(), HasSubstr("Try 'ei4make --help'"));
  EXPECT_THAT(out(), IsEmpty());
  EXPECT_EQ(run({"--what", "a", "b"}), 2);
  EXPECT_THAT(err(), HasSubstr("unknown option --what"));
}

TEST_F(Ei4Make, PrintsHelpAndVersion) {
  EXPECT_EQ(run({"--help"}), 0);
  EXPECT_THAT(out(), testing::StartsWith("Makes a wavelet-compressed .ei4 file"));
  EXPECT_EQ(run({"--version"}), 0);
  EXPECT_THAT(out(), testing::MatchesRegex("ei4make [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

}  // namespace
