// Runs the built erblb in a folder of its own and keeps what it printed.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <string>
#include <vector>

#include "container/FileBlob.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace ei4::test {

struct ErblbRun {
  int status = -1;  ///< exit status; -1 when it did not exit by itself
  std::string out;
  std::string err;
};

class ErblbTest : public testing::Test {
 protected:
  ErblbRun run(std::vector<std::string> words) const {
    words.insert(words.begin(), ERBLB_PROGRAM);
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, printed.path("out").c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, printed.path("err").c_str(), flags, 0600);
    posix_spawn_file_actions_addchdir_np(&actions, folder.path("").c_str());
    pid_t child = 0;
    const int failed = posix_spawn(&child, ERBLB_PROGRAM, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ErblbRun result;
    int status = 0;
    if (failed == 0 && waitpid(child, &status, 0) == child && WIFEXITED(status))
      result.status = WEXITSTATUS(status);
    result.out = text(printed, "out");
    result.err = text(printed, "err");
    return result;
  }

  static std::string text(const TempFolder& from, const std::string& name) {
    const auto bytes = from.read(name);
    return {bytes.begin(), bytes.end()};
  }

  /// Expects success without a word.
  void runQuietly(const std::vector<std::string>& words) const {
    const ErblbRun done = run(words);
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.out, "");
    EXPECT_EQ(done.err, "");
  }

  /// Expects exit status 1 and `message` among the errors.
  void runFailing(const std::vector<std::string>& words, const std::string& message) const {
    const ErblbRun done = run(words);
    EXPECT_EQ(done.status, 1);
    EXPECT_NE(done.err.find(message), std::string::npos) << done.err;
  }

  /// The entry's bytes as the converter would read them; one byte 255 when there is no such entry.
  std::vector<unsigned char> payload(const std::string& container, const std::string& name) const {
    FileBlob blob(folder.path(container));
    const BlobEntry* entry = blob.findBlobEntry(name);
    if (entry == nullptr) return {255};
    std::vector<unsigned char> bytes(static_cast<std::size_t>(entry->size));
    EXPECT_EQ(blob.readEntryIntoBuffer(entry, 0, bytes.data(), 0, entry->size), entry->size);
    return bytes;
  }

  TempFolder folder;  ///< where the program runs

 private:
  TempFolder printed;
};

}  // namespace ei4::test
