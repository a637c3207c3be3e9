#include "conformance/vector_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace ei4::test {
namespace {

using testing::HasSubstr;

constexpr const char* kStreamHeading =
    "stream\tbytes_given\tfactor\tstatus\twidth\theight\tbytes_per_pixel\toutput_bytes\tsha256_of_"
    "output\tnotes\n";
constexpr const char* kRealHeading = "file\tinput\trequest\tstatus\twidth\theight\tsha256_of_pixels\n";

class VectorRows : public testing::Test {
 protected:
  void SetUp() override {
    const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    m_Folder = std::filesystem::path(testing::TempDir()) / ("vector_rows_" + name);
    std::filesystem::create_directories(m_Folder / "streams");
    std::filesystem::create_directories(m_Folder / "real");
  }
  void TearDown() override { std::filesystem::remove_all(m_Folder); }

  void write(const std::string& streams, const std::string& real) const {
    std::ofstream(m_Folder / "streams" / "vectors.tsv") << kStreamHeading << streams;
    std::ofstream(m_Folder / "real" / "real.tsv") << kRealHeading << real;
  }
  std::string failure() const {
    try {
      readVectorRows(m_Folder);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return {};
  }

  std::filesystem::path m_Folder;
};

TEST_F(VectorRows, NameAStreamWithItsPrefixAndItsPixels) {
  write("v1.gw\t300\t2\t4\t10\t20\t3\t600\tabc\t-\n", "");
  const auto rows = readVectorRows(m_Folder);
  ASSERT_EQ(rows.size(), 1U);
  const VectorRow& row = rows[0];
  EXPECT_EQ(row.file, m_Folder / "streams" / "v1.gw");
  EXPECT_EQ(row.pixels, m_Folder / "streams" / "v1.300.2.raw");
  EXPECT_FALSE(row.isEi4);
  EXPECT_EQ(row.bytesGiven, 300U);
  EXPECT_EQ(row.factor, 2);
  EXPECT_EQ(row.status, 4);
  EXPECT_EQ(row.width, 10);
  EXPECT_EQ(row.height, 20);
  EXPECT_EQ(row.bytesPerPixel, 3);
  EXPECT_EQ(row.outputBytes, 600U);
  EXPECT_EQ(row.sha256, "abc");
}

TEST_F(VectorRows, TellAWantedWidthFromAFactor) {
  write("",
        "a.ei4\twhole stream\tfactor 6\t0\t1\t2\tabc\na.ei4\t8192 stream bytes read\twanted width "
        "100\t4\t3\t4\tdef\n");
  const auto rows = readVectorRows(m_Folder);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_TRUE(rows[0].isEi4);
  EXPECT_EQ(rows[0].bytesGiven, 0U);
  EXPECT_EQ(rows[0].factor, 6);
  EXPECT_FALSE(rows[0].wantedWidth);
  EXPECT_TRUE(rows[0].pixels.empty());
  EXPECT_EQ(rows[1].bytesGiven, 8192U);
  EXPECT_EQ(rows[1].wantedWidth, 100);
}

TEST_F(VectorRows, RefuseALineThatTheyDoNotUnderstand) {
  write("v1.gw\t300\tx2\t4\t10\t20\t3\t600\tabc\t-\n", "");
  EXPECT_THAT(failure(), HasSubstr("vectors.tsv:2: not a number: x2"));
  write("v1.gw\t300\n", "");
  EXPECT_THAT(failure(), HasSubstr("vectors.tsv:2"));
  write("", "a.ei4\twhole stream\tsideways\t0\t1\t2\tabc\n");
  EXPECT_THAT(failure(), HasSubstr("real.tsv:2: unknown request: sideways"));
  write("", "a.ei4\tsome of it\tfactor 0\t0\t1\t2\tabc\n");
  EXPECT_THAT(failure(), HasSubstr("real.tsv:2: unknown input: some of it"));
}

TEST_F(VectorRows, RefuseAFolderWithoutTables) {
  EXPECT_THAT(failure(), HasSubstr("vectors.tsv: cannot be read"));
}

}  // namespace
}  // namespace ei4::test
