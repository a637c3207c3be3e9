// What extractAll makes of a container, and what it leaves alone.
#include <gtest/gtest.h>

#include <filesystem>

#include "container/FileBlob.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::BlobBuilder;
using ei4::test::ramp;
using ei4::test::TempFolder;

class BlobExtract : public testing::Test {
 protected:
  BlobExtract() : m_before(fs::current_path()) { fs::current_path(folder.path("")); }
  ~BlobExtract() override { fs::current_path(m_before); }

  // Extracts to the current folder. Returns what was printed.
  std::string extracted(const BlobBuilder& builder) {
    FileBlob blob(elsewhere.write("x", builder.build()));
    EXPECT_TRUE(blob.parseBlob());
    return extracted(blob);
  }
  static std::string extracted(FileBlob& blob) {
    testing::internal::CaptureStdout();
    blob.extractAll();
    return testing::internal::GetCapturedStdout();
  }

  TempFolder elsewhere;
  TempFolder folder;

 private:
  fs::path m_before;
};

TEST_F(BlobExtract, MakesFilesOfTheEntriesNames) {
  EXPECT_EQ(extracted(BlobBuilder().chunk("p#b", ramp(100000)).chunk("a", ramp(3)).chunk("c")),
            "3 bytes extracted as a\n100000 bytes extracted as b\n0 bytes extracted as c\n");
  EXPECT_EQ(folder.read("a"), ramp(3));
  EXPECT_EQ(folder.read("b"), ramp(100000));
  EXPECT_TRUE(folder.has("c"));
}

TEST_F(BlobExtract, ReplacesFiles) {
  folder.write("a", ramp(100));
  extracted(BlobBuilder().chunk("a", ramp(3)));
  EXPECT_EQ(folder.read("a"), ramp(3));
}

TEST_F(BlobExtract, PassesOverWhatCannotBeMade) {
  fs::create_directory("folder");
  EXPECT_EQ(extracted(BlobBuilder()
                          .chunk("a", ramp(3))
                          .chunk("folder", ramp(3))
                          .chunk("no/such/folder", ramp(3))
                          .chunk("", ramp(3))
                          .chunk(std::string(256, 'n'), ramp(3))
                          .chunk("folder/b", ramp(4))),
            "3 bytes extracted as a\n4 bytes extracted as folder/b\n");
}

}  // namespace
