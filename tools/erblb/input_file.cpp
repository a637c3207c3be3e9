#include "erblb/input_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "blob/blob_format.h"
#include "erblb/command_line.h"
#include "erblb/entry_name.h"
#include "erblb/interrupt.h"

namespace ei4::erblb {

InputFile::InputFile(const std::string& word) {
  const std::size_t equals = word.find('=');
  m_path = equals == std::string::npos ? word : word.substr(equals + 1);
  m_storedName = equals == std::string::npos ? m_path.substr(m_path.rfind('/') + 1) : word.substr(0, equals);
  if (const char* fault = tools::blobNameFault(m_storedName)) {
    throw JobError(shown(word) + ": the entry's name " + fault);
  }
  struct stat status = {};
  if (stat(m_path.c_str(), &status) != 0) {
    throw JobError(shown(m_path) + ": " + std::generic_category().message(errno));
  }
  if (!S_ISREG(status.st_mode)) throw JobError(shown(m_path) + ": is no regular file");
  if (status.st_size > tools::kLargestContainer)
    throw JobError(shown(m_path) + ": is too large for a container");
  m_size = static_cast<std::int32_t>(status.st_size);
}

std::string InputFile::entryName() const { return m_storedName.substr(m_storedName.find('#') + 1); }

void InputFile::copyTo(const std::function<void(std::span<const unsigned char>)>& sink) const {
  const File file = openRegularFile(m_path.c_str(), "rb");
  if (!file) throw JobError(shown(m_path) + ": " + std::generic_category().message(errno));
  std::array<unsigned char, 65536> block;
  for (std::size_t left = static_cast<std::size_t>(m_size); left > 0;) {
    const std::size_t read = std::fread(block.data(), 1, std::min(left, block.size()), file.get());
    throwIfInterrupted();
    if (read == 0) throw JobError(shown(m_path) + ": cannot be read to its end");
    sink(std::span(block).first(read));
    left -= read;
  }
}

}  // namespace ei4::erblb
