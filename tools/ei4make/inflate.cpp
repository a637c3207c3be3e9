#include "ei4make/inflate.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>

#include "ei4make/picture.h"

namespace ei4::tools {

namespace {

struct Inflater {
  z_stream stream{};
  Inflater() {
    constexpr int kNoHeader = -15;
    if (inflateInit2(&stream, kNoHeader) != Z_OK) throw std::bad_alloc();
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() { inflateEnd(&stream); }
};

constexpr std::size_t kMostAtOnce = std::numeric_limits<uInt>::max();

}  // namespace

std::vector<unsigned char> inflated(std::span<const unsigned char> stream, std::size_t most) {
  Inflater inflater;
  z_stream& z = inflater.stream;
  std::vector<unsigned char> bytes;
  std::vector<unsigned char> piece(1U << 16);
  int status = Z_OK;
  while (status == Z_OK) {
    if (z.avail_in == 0) {
      z.next_in = const_cast<unsigned char*>(stream.data());
      z.avail_in = static_cast<uInt>(std::min(stream.size(), kMostAtOnce));
      stream = stream.subspan(z.avail_in);
    }
    z.next_out = piece.data();
    z.avail_out = static_cast<uInt>(piece.size());
    status = inflate(&z, Z_NO_FLUSH);
    const std::size_t count = piece.size() - z.avail_out;
    if (count > most - bytes.size()) throw PictureError("its deflated data grow beyond all proportion");
    bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
  }
  if (status == Z_MEM_ERROR) throw std::bad_alloc();
  if (status != Z_STREAM_END)
    throw PictureError("the DICOM file is damaged: its deflated data are cut or wrong");
  return bytes;
}

}  // namespace ei4::tools
