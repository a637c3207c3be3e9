// Inputs for the tests of ei4info, held in memory.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "container/serial_reader.h"
#include "ei4info/image_facts.h"
#include "encoder/ei4_writer.h"
#include "encoder/gw_encoder.h"
#include "test_pictures.h"

namespace ei4::test {

using Bytes = std::vector<unsigned char>;

/// A container entry as far as reading goes.
class MemoryReader final : public SerialReader {
 public:
  explicit MemoryReader(Bytes bytes) : m_bytes(std::move(bytes)) {}
  int getLength() override { return static_cast<int>(m_bytes.size()); }
  int readBytes(unsigned char* buffer, int bufferOffset, int count) override {
    const int read = std::clamp(getLength() - m_position, 0, count);
    std::copy_n(m_bytes.begin() + m_position, read, buffer + bufferOffset);
    m_position += read;
    return read;
  }
  int skipBytes(int count) override {
    if (m_position + count > getLength()) return -1;
    m_position += count;
    return count;
  }

 private:
  Bytes m_bytes;
  int m_position = 0;
};

inline info::ImageFacts inspect(const Bytes& file) {
  MemoryReader reader(file);
  return info::inspectImage(reader);
}

inline Bytes codedStream(int width, int height, int bytesPerPixel = 1, int bits = 8,
                         tools::EncodeOptions options = {}) {
  options.bytesPerPixel = bytesPerPixel;
  options.bitsPerPixel = bits;
  return tools::encode(testPicture(width, height, bytesPerPixel, bits, Look::Smooth), width, height, options);
}

inline Bytes ei4(const Bytes& stream, int preamble = tools::kShortestPreamble) {
  tools::Ei4Preamble fields;
  fields.length = preamble;
  return tools::writeEi4(fields, stream);
}

inline Bytes first(const Bytes& bytes, std::size_t count) {
  return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(std::min(count, bytes.size()))};
}

/// The inputs of a fuzz target, each as it is stored.
inline std::vector<Bytes> corpusOf(const char* target) {
  std::vector<std::filesystem::path> paths;
  for (const auto& file : std::filesystem::directory_iterator(std::string(EI4_CORPUS "/") + target))
    paths.push_back(file.path());
  std::sort(paths.begin(), paths.end());
  std::vector<Bytes> inputs;
  for (const auto& path : paths) {
    std::ifstream file(path, std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return inputs;
}

}  // namespace ei4::test
