// Reversible JPEG 2000 by OpenJPEG: the 5/3 transform, 5 decompositions, blocks of 64 x 64, one tile, one layer.
#include "contestant.h"

#if EI4_HAVE_OPENJPEG
#include <openjpeg.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "sample_lines.h"

namespace ei4::bench {
namespace {

// The library's codec and stream are the same type, so the owners differ in the function.
template <auto destroy>
struct DestroyWith {
  template <class T>
  void operator()(T* object) const {
    destroy(object);
  }
};
using OpjCodec = std::unique_ptr<opj_codec_t, DestroyWith<opj_destroy_codec>>;
using OpjStream = std::unique_ptr<opj_stream_t, DestroyWith<opj_stream_destroy>>;
using OpjImage = std::unique_ptr<opj_image_t, DestroyWith<opj_image_destroy>>;

constexpr auto kFailed = static_cast<OPJ_SIZE_T>(-1);
constexpr int kDecompositions = 5;

void require(bool fine, const char* step) {
  if (!fine) throw std::runtime_error(std::string("OpenJPEG: ") + step + " failed");
}

struct Source {
  const Bytes& bytes;
  std::size_t at;
};

OpjStream streamFrom(Source& source) {
  OpjStream stream(opj_stream_default_create(OPJ_TRUE));
  require(stream != nullptr, "opening a stream");
  opj_stream_set_user_data(stream.get(), &source, nullptr);
  opj_stream_set_user_data_length(stream.get(), source.bytes.size());
  opj_stream_set_read_function(stream.get(), [](void* to, OPJ_SIZE_T most, void* data) {
    auto& from = *static_cast<Source*>(data);
    const std::size_t count = std::min<std::size_t>(most, from.bytes.size() - from.at);
    if (count == 0) return kFailed;
    std::memcpy(to, from.bytes.data() + from.at, count);
    from.at += count;
    return count;
  });
  opj_stream_set_skip_function(stream.get(), [](OPJ_OFF_T count, void* data) {
    auto& from = *static_cast<Source*>(data);
    const auto left = static_cast<OPJ_OFF_T>(from.bytes.size() - from.at);
    from.at += static_cast<std::size_t>(std::clamp<OPJ_OFF_T>(count, 0, left));
    return count;
  });
  opj_stream_set_seek_function(stream.get(), [](OPJ_OFF_T to, void* data) -> OPJ_BOOL {
    auto& from = *static_cast<Source*>(data);
    if (to < 0 || static_cast<std::size_t>(to) > from.bytes.size()) return OPJ_FALSE;
    from.at = static_cast<std::size_t>(to);
    return OPJ_TRUE;
  });
  return stream;
}

struct Sink {
  Bytes bytes;
  std::size_t at;
};

OpjStream streamTo(Sink& sink) {
  OpjStream stream(opj_stream_default_create(OPJ_FALSE));
  require(stream != nullptr, "opening a stream");
  opj_stream_set_user_data(stream.get(), &sink, nullptr);
  opj_stream_set_write_function(stream.get(), [](void* from, OPJ_SIZE_T count, void* data) {
    auto& to = *static_cast<Sink*>(data);
    to.bytes.resize(std::max<std::size_t>(to.bytes.size(), to.at + count));
    std::memcpy(to.bytes.data() + to.at, from, count);
    to.at += count;
    return count;
  });
  opj_stream_set_skip_function(stream.get(), [](OPJ_OFF_T count, void* data) {
    static_cast<Sink*>(data)->at += static_cast<std::size_t>(count);
    return count;
  });
  opj_stream_set_seek_function(stream.get(), [](OPJ_OFF_T to, void* data) -> OPJ_BOOL {
    static_cast<Sink*>(data)->at = static_cast<std::size_t>(to);
    return OPJ_TRUE;
  });
  return stream;
}

OpjImage imageOf(const Picture& picture) {
  const auto width = static_cast<OPJ_UINT32>(picture.width);
  const auto height = static_cast<OPJ_UINT32>(picture.height);
  const bool colour = picture.bytesPerPixel == 3;
  std::vector<opj_image_cmptparm_t> components(colour ? 3 : 1);
  for (auto& component : components) {
    component.dx = component.dy = 1;
    component.w = width;
    component.h = height;
    component.prec = static_cast<OPJ_UINT32>(picture.bitsPerSample);
  }
  OpjImage image(opj_image_create(static_cast<OPJ_UINT32>(components.size()), components.data(),
                                  colour ? OPJ_CLRSPC_SRGB : OPJ_CLRSPC_GRAY));
  require(image != nullptr, "making an image");
  image->x1 = width;
  image->y1 = height;
  const std::size_t samples = std::size_t{width} * height;
  for (std::size_t i = 0; i < components.size(); ++i) {
    if (picture.bytesPerPixel == 2) {
      unpackWords(picture.pixels.data(), samples, image->comps[i].data);
    } else {
      unpackBytes(picture.pixels.data() + i, components.size(), samples, image->comps[i].data);
    }
  }
  return image;
}

opj_cparameters_t reversible(const Picture& picture) {
  opj_cparameters_t parameters;
  opj_set_default_encoder_parameters(&parameters);
  parameters.tcp_numlayers = 1;
  parameters.cp_disto_alloc = 1;  // with the rate of 0: all of it
  parameters.irreversible = 0;
  const auto side = static_cast<unsigned>(std::min(picture.width, picture.height));
  parameters.numresolution = std::min<int>(kDecompositions + 1, static_cast<int>(std::bit_width(side)));
  parameters.tcp_mct = picture.bytesPerPixel == 3 ? 1 : 0;
  return parameters;
}

class OpenJpeg final : public Contestant {
 public:
  std::string key() const override { return "openjpeg"; }
  std::string title() const override { return std::string("OpenJPEG ") + opj_version(); }

  Bytes code(const Picture& picture) const override {
    const OpjImage image = imageOf(picture);
    opj_cparameters_t parameters = reversible(picture);
    const OpjCodec codec(opj_create_compress(OPJ_CODEC_J2K));
    require(codec != nullptr && opj_setup_encoder(codec.get(), &parameters, image.get()) == OPJ_TRUE,
            "setting up the encoder");
    Sink sink{};
    {
      const OpjStream stream = streamTo(sink);
      require(opj_start_compress(codec.get(), image.get(), stream.get()) == OPJ_TRUE &&
                  opj_encode(codec.get(), stream.get()) == OPJ_TRUE &&
                  opj_end_compress(codec.get(), stream.get()) == OPJ_TRUE,
              "encoding");
    }
    return std::move(sink.bytes);
  }

  void decode(const Bytes& coded, std::span<unsigned char> out) const override {
    Source source{coded, 0};
    const OpjStream stream = streamFrom(source);
    const OpjCodec codec(opj_create_decompress(OPJ_CODEC_J2K));
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    require(codec != nullptr && opj_setup_decoder(codec.get(), &parameters) == OPJ_TRUE &&
                opj_codec_set_threads(codec.get(), 0) == OPJ_TRUE,  // 0: the caller's thread alone
            "setting up the decoder");
    opj_image_t* header = nullptr;
    const bool read = opj_read_header(stream.get(), codec.get(), &header) == OPJ_TRUE;
    const OpjImage image(header);
    require(read && opj_decode(codec.get(), stream.get(), image.get()) == OPJ_TRUE &&
                opj_end_decompress(codec.get(), stream.get()) == OPJ_TRUE,
            "decoding");
    pack(*image, out);
  }

 private:
  static void pack(const opj_image_t& image, std::span<unsigned char> out) {
    const auto* parts = image.comps;
    const std::size_t samples = std::size_t{parts[0].w} * parts[0].h;
    if (image.numcomps == 3) {
      packColours(parts[0].data, parts[1].data, parts[2].data, samples, out.data());
    } else if (out.size() == 2 * samples) {
      packWords(parts[0].data, samples, out.data());
    } else {
      packBytes(parts[0].data, samples, out.data());
    }
  }
};

}  // namespace

std::unique_ptr<Contestant> makeOpenJpeg() { return std::make_unique<OpenJpeg>(); }

}  // namespace ei4::bench

#else

std::unique_ptr<ei4::bench::Contestant> ei4::bench::makeOpenJpeg() { return nullptr; }

#endif
