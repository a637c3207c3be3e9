// erblb extract where calls of the system fail: reads at each point, and the ways of giving a file its name.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include "container/FileBlob.h"
#include "container/call_faults.h"
#include "erblb/commands.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::BlobBuilder;
using ei4::test::ramp;
using ei4::test::ReadFaults;
using ei4::test::RenameFaults;
using ei4::test::TempFolder;

class ErblbFaults : public testing::Test {
 protected:
  /// The message of the error, with all that went to stderr; empty when all was extracted.
  static std::string extract(const std::string& container, const TempFolder& target, bool force = false,
                             ReadFaults* reads = nullptr) {
    ei4::erblb::Request request;
    request.command = ei4::erblb::Command::extract;
    request.container = container;
    request.folder = target.path("");
    request.force = force;
    testing::internal::CaptureStderr();
    std::string last;
    try {
      ei4::erblb::extractEntries(request);
    } catch (const ei4::erblb::JobError& error) {
      last = error.what();
    }
    if (reads != nullptr) reads->end();
    return testing::internal::GetCapturedStderr() + last;
  }

  static std::ptrdiff_t filesIn(const TempFolder& target) {
    return std::distance(fs::directory_iterator(target.path("")), {});
  }

  TempFolder folder;
  TempFolder target;
  std::string container =
      folder.write("x", BlobBuilder().chunk("a", ramp(3)).chunk("b", ramp(150000)).chunk("c").build());
};

TEST_F(ErblbFaults, EachFailedReadIsToldAndLeavesNoHalfOfAFile) {
  for (const auto which : {ReadFaults::Which::onlyOne, ReadFaults::Which::allFromThere}) {
    int refusals = 0;
    for (int first = 0;; ++first) {
      const TempFolder fresh;
      std::string message;
      int calls = 0;
      {
        ReadFaults reads(first, which);
        message = extract(container, fresh, false, &reads);
        calls = reads.calls();
      }
      std::ptrdiff_t whole = 0;
      for (const auto& [name, payload] :
           {std::pair("a", ramp(3)), std::pair("b", ramp(150000)), std::pair("c", ramp(0))}) {
        if (!fresh.has(name)) continue;
        EXPECT_EQ(fresh.read(name), payload);
        ++whole;
      }
      EXPECT_EQ(filesIn(fresh), whole);  // nothing else, no temporary file either
      if (calls <= first) {
        EXPECT_EQ(message, "");
        break;
      }
      if (!message.empty()) ++refusals;
    }
    EXPECT_GT(refusals, 10);
  }
}

TEST_F(ErblbFaults, AContainerThatIsCutMeanwhileGivesWhatIsWholeAndSaysSo) {
  const int lastReadOfParsing = [this] {
    const ReadFaults reads(-1);
    FileBlob parsed(container);
    EXPECT_TRUE(parsed.parseBlob());
    return reads.calls();
  }();
  const ReadFaults cut(lastReadOfParsing, [this] { ASSERT_EQ(truncate(container.c_str(), 90000), 0); });
  EXPECT_EQ(extract(container, target), "erblb: b: cannot be read to its end\n1 entry not extracted");
  EXPECT_EQ(target.read("a"), ramp(3));
  EXPECT_TRUE(target.has("c"));
  EXPECT_EQ(filesIn(target), 2);
}

class WithoutRename : public ErblbFaults, public testing::WithParamInterface<int> {};

TEST_P(WithoutRename, FilesGetTheirNamesByLinks) {
  const RenameFaults without(GetParam());
  EXPECT_EQ(extract(container, target), "");
  EXPECT_EQ(target.read("a"), ramp(3));
  EXPECT_EQ(target.read("b"), ramp(150000));
  EXPECT_EQ(filesIn(target), 3);
  struct stat status = {};
  ASSERT_EQ(stat(target.path("b").c_str(), &status), 0);
  EXPECT_EQ(status.st_nlink, 1U);
}

TEST_P(WithoutRename, ANameThatIsTakenMeanwhileIsNotReplaced) {
  const RenameFaults without(GetParam());
  // The last read is that of the end of "b": "c" has nothing to be read.
  const int readsBefore = [this] {
    const TempFolder trial;
    ReadFaults reads(-1);
    extract(container, trial, false, &reads);
    return reads.calls();
  }();
  const ReadFaults intruder(readsBefore - 1, [this] { target.write("b", ramp(9)); });
  EXPECT_EQ(extract(container, target), "erblb: b: exists already (-f replaces it)\n1 entry not extracted");
  EXPECT_EQ(target.read("b"), ramp(9));
  EXPECT_EQ(filesIn(target), 3);
}

TEST_P(WithoutRename, FilesAreReplacedWhenForced) {
  const RenameFaults without(GetParam());
  target.write("a", ramp(9));
  EXPECT_EQ(extract(container, target, true), "");
  EXPECT_EQ(target.read("a"), ramp(3));
  EXPECT_EQ(filesIn(target), 3);
}

TEST_P(WithoutRename, AndWithoutLinksNothingIsLeft) {
  const RenameFaults without(GetParam(), EPERM);
  const std::string message = extract(container, target);
  EXPECT_NE(message.find("a: Operation not permitted\n"), std::string::npos) << message;
  EXPECT_NE(message.find("3 entries not extracted"), std::string::npos) << message;
  EXPECT_TRUE(target.empty());
}

INSTANTIATE_TEST_SUITE_P(BySystem, WithoutRename, testing::Values(EINVAL, ENOSYS));

TEST_F(ErblbFaults, AnyOtherFailureToRenameIsToldAsItIs) {
  const RenameFaults without(ENOSPC);
  const std::string message = extract(container, target);
  EXPECT_NE(message.find("a: No space left on device\n"), std::string::npos) << message;
  EXPECT_TRUE(target.empty());
}

}  // namespace
