#include "driver/read_annotation.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "annotation/annotation_set.h"
#include "annotation/report_limits.h"
#include "support/cli_temp_folder.h"

namespace {

constexpr const char* kView = "sized 300 200 0 0\nlight 400 40 1 0\n";

class ReadReport : public testing::Test {
 protected:
  std::string write(const std::string& text) const {
    return folder.write("report.txt", {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
  }
  int read(const std::string& path) { return ReadAnnotation(set, path.c_str(), CSize(150, 100)); }

  ei4::test::TempFolder folder;
  CAnnotationSet set;
};

}  // namespace

TEST_F(ReadReport, TakesTheViewAndTheAnnotations) {
  EXPECT_EQ(read(write(std::string(kView) + "ruler 1 ff 10 20 0 0 0 0 0 0 | 30 40 5mm\n")), 1);
  EXPECT_EQ(set.GetDstImageSize(), CSize(300, 200));
  EXPECT_EQ(set.m_sizeImg, CSize(150, 100));
  EXPECT_EQ(set.m_nLightWindow, 400);
  EXPECT_EQ(set.m_nLightLevel, 40);
  EXPECT_EQ(set.m_listAnnotations.GetCount(), 1);
}

TEST_F(ReadReport, NeedsNoLastLineEnd) { EXPECT_EQ(read(write("sized 3 2 0 0\nlight 400 40 1 0")), 1); }

TEST_F(ReadReport, EndsAtAZeroByte) {
  std::string text = kView;
  text += '\0';
  text += "light 7 8 0 0\n";
  EXPECT_EQ(read(write(text)), 1);
  EXPECT_EQ(set.m_nLightWindow, 400);
}

TEST_F(ReadReport, FailsWithoutAView) {
  EXPECT_EQ(read(write("sized 300 200 0 0\n")), 0);
  EXPECT_EQ(read(write("light 400 40 1 0\nsized 300 200\n")), 0);
}

TEST_F(ReadReport, FailsForWhatIsNoReport) {
  EXPECT_EQ(ReadAnnotation(set, nullptr, CSize(1, 1)), 0);
  EXPECT_EQ(read(folder.path("none.txt")), 0);
  EXPECT_EQ(read(folder.path(".")), 0);
  EXPECT_EQ(read(write("")), 0);
}

TEST_F(ReadReport, FailsForAPipeWithoutWaitingForIt) {
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(read(folder.path("pipe")), 0);
}

TEST_F(ReadReport, FailsForAFileBeyondTheLimitWithoutReadingIt) {
  const std::string path = write(kView);
  const auto resize = [&path](std::uintmax_t size) {
    std::error_code error;
    std::filesystem::resize_file(path, size, error);  // zero bytes, which take up no room on the disk
    return !error;
  };
  for (const std::uintmax_t size : {std::uintmax_t{ei4::kMostReportBytes} + 1, std::uintmax_t{50} << 20,
                                    std::uintmax_t{1} << 31, std::uintmax_t{1} << 40}) {
    if (!resize(size)) continue;  // no file of this size can be made here
    EXPECT_EQ(read(path), 0) << size;
    EXPECT_EQ(set.m_nLightWindow, 0) << size;
  }
  ASSERT_TRUE(resize(ei4::kMostReportBytes));
  EXPECT_EQ(read(path), 1);
  EXPECT_EQ(set.m_nLightWindow, 400);
}

TEST_F(ReadReport, FailsForAReportBeyondALimit) {
  std::string text = kView;
  for (int i = 0; i <= ei4::kMostAnnotations; ++i) text += "text 1 ff 9 9 0 0 9 9 9 9 | 0 a\n";
  EXPECT_EQ(read(write(text)), 0);
  EXPECT_TRUE(set.m_listAnnotations.IsEmpty());
}
