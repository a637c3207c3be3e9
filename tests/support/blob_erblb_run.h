// Runs the built erblb in a folder of its own and keeps what it printed.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
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

/// A run that goes on meanwhile.
struct StartedErblb {
  pid_t child = -1;
  std::string number;  ///< of the run, in the names of the files that take what it prints
};

class ErblbTest : public testing::Test {
 protected:
  ErblbRun run(const std::vector<std::string>& words) const { return finish(start(words)); }

  StartedErblb start(std::vector<std::string> words) const {
    words.insert(words.begin(), ERBLB_PROGRAM);
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    StartedErblb run{-1, std::to_string(runs++)};
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, printed.path("out" + run.number).c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, printed.path("err" + run.number).c_str(), flags, 0600);
    posix_spawn_file_actions_addchdir_np(&actions, folder.path("").c_str());
    // Whoever runs the tests in the background may ignore these, and programs inherit that.
    sigset_t heard;
    sigemptyset(&heard);
    for (const int number : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&heard, number);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &heard);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    EXPECT_EQ(posix_spawn(&run.child, ERBLB_PROGRAM, &actions, &attributes, argv.data(), environ), 0);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return run;
  }

  ErblbRun finish(const StartedErblb& run) const {
    ErblbRun result;
    int status = 0;
    if (run.child > 0 && waitpid(run.child, &status, 0) == run.child && WIFEXITED(status))
      result.status = WEXITSTATUS(status);
    result.out = text(printed, "out" + run.number);
    result.err = text(printed, "err" + run.number);
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
  mutable int runs = 0;
};

}  // namespace ei4::test
