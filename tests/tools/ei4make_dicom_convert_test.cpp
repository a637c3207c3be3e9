// From a DICOM file to the converter's output: the tool's words, its file, and the converter's own program.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>

#include "ei4make/make.h"
#include "tools/ei4make_dicom_builder.h"

namespace {

using ei4::test::Bytes;
using ei4::test::DicomBuilder;
using ei4::test::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;

class ConvertedDicom : public testing::Test {
 protected:
  int make(const Bytes& dicom, std::vector<std::string> options = {}) {
    err_.str("");
    options.push_back(folder_.write("scan", dicom));
    options.push_back(folder_.path("scan.ei4"));
    const std::vector<std::string_view> words(options.begin(), options.end());
    std::ostringstream out;
    return ei4::tools::runEi4make(words, out, err_);
  }

  /// What the converter makes of it, 8-bit grey or colour.
  Bytes converted(const char* format = "M08") {
    const std::string command = std::string(EI4CONVERT_PROGRAM) + " -in " + folder_.path("scan.ei4") +
                                " -out " + folder_.path("scan.raw") + " -outcolor " + format + " > /dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return folder_.read("scan.raw");
  }

  [[nodiscard]] std::string err() const { return err_.str(); }
  TempFolder folder_;

 private:
  std::ostringstream err_;
};

// Window 256, centre 128, slope 1: a value v comes out as v * 255 / 256.
TEST_F(ConvertedDicom, ShowsLowValuesDarkInMonochrome2AndBrightInMonochrome1) {
  DicomBuilder builder(4, 1, 16, 16);
  builder.text(DCM_WindowWidth, "256").text(DCM_WindowCenter, "128").words({0, 64, 128, 300});
  EXPECT_EQ(make(builder.file()), 0);
  EXPECT_THAT(converted(), ElementsAre(0, 63, 127, 255));
  EXPECT_EQ(make(builder.text(DCM_PhotometricInterpretation, "MONOCHROME1").file()), 0);
  EXPECT_THAT(converted(), ElementsAre(255, 191, 127, 0));
  EXPECT_THAT(err(), IsEmpty());
}

TEST_F(ConvertedDicom, ShowsSignedHounsfieldUnitsInTheirWindow) {
  DicomBuilder builder(5, 1, 16, 16);
  builder.number(DCM_PixelRepresentation, 1)
      .text(DCM_WindowWidth, "400")
      .text(DCM_WindowCenter, "40")
      .words({static_cast<std::uint16_t>(-1024), static_cast<std::uint16_t>(-160), 40, 239, 3000});
  EXPECT_EQ(make(builder.file()), 0);
  EXPECT_THAT(converted(), ElementsAre(0, 0, 127, 254, 255));
  // The same values stored without a sign.
  DicomBuilder shifted(5, 1, 16, 12);
  shifted.text(DCM_RescaleSlope, "1").text(DCM_RescaleIntercept, "-1024").words({0, 864, 1064, 1263, 4024});
  EXPECT_EQ(make(shifted.file(), {"--window", "400", "--level", "40"}), 0);
  EXPECT_THAT(converted(), ElementsAre(0, 0, 127, 254, 255));
}

TEST_F(ConvertedDicom, KeepsColoursWithoutAWindow) {
  EXPECT_EQ(make(DicomBuilder(2, 1, 8, 8).colour("RGB").bytes({0, 128, 255, 1, 2, 3}).file()), 0);
  const Bytes file = folder_.read("scan.ei4");
  EXPECT_EQ(file[24 + 4], 3);
  // The preamble's window of 256 takes 255 to 254; nothing else changes.
  EXPECT_THAT(converted("RGB"), ElementsAre(0, 127, 254, 0, 1, 2));
}

TEST_F(ConvertedDicom, HoldsNothingElseOfTheHeader) {
  const Bytes dicom = DicomBuilder(1, 1, 8, 8).bytes({7}).file();
  const std::string secret = "SECRET";
  const auto holds = [&](const Bytes& bytes) {
    return std::search(bytes.begin(), bytes.end(), secret.begin(), secret.end()) != bytes.end();
  };
  ASSERT_TRUE(holds(dicom));
  EXPECT_EQ(make(dicom), 0);
  const Bytes file = folder_.read("scan.ei4");
  EXPECT_FALSE(holds(file));
  EXPECT_LT(file.size(), 60U);
}

TEST_F(ConvertedDicom, NotesAndRefusalsNameTheFileInOneLine) {
  DicomBuilder builder(1, 1, 8, 8);
  builder.bytes({7}).text(DCM_WindowWidth, "10.5").text(DCM_WindowCenter, "5");
  EXPECT_EQ(make(builder.file()), 0);
  EXPECT_EQ(err(),
            "ei4make: note: " + folder_.path("scan") +
                ": the converter reads whole numbers only: window 10.5 as 10; for the same look without "
                "rescaling state --slope 1 --intercept 0 --window 11 --level 5\n");
  EXPECT_EQ(make(builder.text(DCM_NumberOfFrames, "2").file()), 1);
  EXPECT_EQ(err(), "ei4make: " + folder_.path("scan") +
                       ": the DICOM file has 2 frames: say which one with --frame\n");
  EXPECT_EQ(make(builder.bytes({7, 9}).file(), {"--frame", "2"}), 0);
}

}  // namespace
