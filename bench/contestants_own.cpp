// The contestants that need no library: our decoder, and a copy of the pixels.
#include <cstring>
#include <stdexcept>
#include <utility>

#include "contestant.h"
#include "gwav4/decompressor.h"

namespace ei4::bench {
namespace {

class OurDecoder final : public Contestant {
 public:
  explicit OurDecoder(std::string title) : name(std::move(title)) {}
  std::string key() const override { return "ours"; }
  std::string title() const override { return name; }

  Bytes code(const Picture& picture) const override { return picture.stream; }

  void decode(const Bytes& coded, std::span<unsigned char> out) const override {
    zel::gwav4::CGWavDecompressor decoder(coded.data(), coded.size() - zel::gwav4::kHeaderBytes, 0, 0);
    if (decoder.decompress(out.data(), out.size(), 0) != zel::gwav4::kComplete) {
      throw std::runtime_error("the stream was not decoded whole");
    }
  }

 private:
  std::string name;
};

class Copy final : public Contestant {
 public:
  std::string key() const override { return "copy"; }
  std::string title() const override { return "copy of the output"; }
  Bytes code(const Picture& picture) const override { return picture.pixels; }
  void decode(const Bytes& coded, std::span<unsigned char> out) const override {
    std::memcpy(out.data(), coded.data(), out.size());
  }
};

}  // namespace

std::unique_ptr<Contestant> makeOurs(const std::string& title) { return std::make_unique<OurDecoder>(title); }
std::unique_ptr<Contestant> makeCopy() { return std::make_unique<Copy>(); }

}  // namespace ei4::bench
