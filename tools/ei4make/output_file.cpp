#include "ei4make/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace ei4::tools {

namespace {

void writeAndClose(File file, const std::string& path, std::span<const unsigned char> bytes) {
  const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  if (!isWritten || std::fclose(file.release()) != 0) throw FileError(path);
}

// A file beside another, which goes away again unless it takes the other's place.
class FileBeside {
 public:
  explicit FileBeside(const std::string& path) : path_(path) {
    constexpr int kMostTries = 1000;
    int descriptor = -1;
    for (int i = 0; descriptor < 0; ++i) {
      name_ = path.substr(0, path.rfind('/') + 1) + ".ei4make-" + std::to_string(getpid()) + "-" +
              std::to_string(i) + ".tmp";
      descriptor = open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (descriptor < 0 && (errno != EEXIST || i == kMostTries)) throw FileError(path);
    }
    file_.reset(fdopen(descriptor, "wb"));
    if (!file_) {
      const int error = errno;
      close(descriptor);
      unlink(name_.c_str());
      errno = error;
      throw FileError(path);
    }
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;
  ~FileBeside() {
    if (!name_.empty()) unlink(name_.c_str());
  }

  void setMode(mode_t mode) {
    if (fchmod(fileno(file_.get()), mode) != 0) throw FileError(path_);
  }
  void write(std::span<const unsigned char> bytes) { writeAndClose(std::move(file_), path_, bytes); }
  void takePlace() {
    if (rename(name_.c_str(), path_.c_str()) != 0) throw FileError(path_);
    name_.clear();
  }

 private:
  std::string path_;
  std::string name_;
  File file_;
};

}  // namespace

FileError::FileError(const std::string& path) : std::runtime_error(path + ": " + std::strerror(errno)) {}

void refuseSameFile(const std::string& input, const std::string& output) {
  struct stat in = {};
  struct stat out = {};
  if (stat(input.c_str(), &in) != 0 || stat(output.c_str(), &out) != 0 || !S_ISREG(in.st_mode)) return;
  if (in.st_dev == out.st_dev && in.st_ino == out.st_ino) {
    throw std::invalid_argument(output + ": input and output are the same file");
  }
}

void writeOutput(const std::string& path, std::span<const unsigned char> bytes) {
  struct stat status = {};
  const bool exists = lstat(path.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) {
    File file(std::fopen(path.c_str(), "wb"));
    if (!file) throw FileError(path);
    writeAndClose(std::move(file), path, bytes);
    return;
  }
  if (exists && access(path.c_str(), W_OK) != 0) throw FileError(path);
  FileBeside file(path);
  if (exists) file.setMode(status.st_mode & 07777U);
  file.write(bytes);
  file.takePlace();
}

}  // namespace ei4::tools
