// Pictures as ei4make takes them in, whole ones and such as lie.
#include <string>
#include <utility>

#include "png_sums.h"
#include "seeds.h"
#include "support/blob_builder.h"

namespace ei4::fuzz {

namespace {

using namespace std::string_literals;
using test::ramp;

enum Kind { kFile, kSummedFile, kDataSet, kRle, kJpeg, kFrame, kPaletteFrame, kDeflated };

Bytes file(std::string_view text, const Bytes& samples = {}) {
  return Seed().u8(kFile).text(text).bytes(samples);
}

Bytes highFirst(std::uint32_t value) {
  return {static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
          static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
}

/// Bytes in one block that is not compressed, so that each can be changed by itself. At most 65535.
Bytes stored(const Bytes& bytes) {
  const auto count = static_cast<int>(bytes.size());
  return Seed().u8(1).u16(count).u16(0xFFFF - count).bytes(bytes);
}

/// A PNG, chunk by chunk.
class Png {
 public:
  enum Type { kGrey = 0, kColour = 2, kPalette = 3, kGreyAlpha = 4, kColourAlpha = 6 };

  Png() : m_file(Seed().text("\x89PNG\r\n\x1a\n")) {}

  Png& chunk(std::string_view name, const Bytes& data) {
    m_file.bytes(highFirst(static_cast<std::uint32_t>(data.size()))).text(name).bytes(data).i32(0);
    return *this;
  }
  Png& header(int width, int height, int bits, Type type, int interlace = 0) {
    return chunk("IHDR", Seed()
                             .bytes(highFirst(static_cast<std::uint32_t>(width)))
                             .bytes(highFirst(static_cast<std::uint32_t>(height)))
                             .u8(bits)
                             .u8(type)
                             .u8(0)
                             .u8(0)
                             .u8(interlace));
  }
  /// Rows of the same length, each behind its filter's number.
  Png& rows(int count, int bytes, int filter = 0) {
    Bytes data;
    for (int y = 0; y < count; ++y) {
      data.push_back(static_cast<unsigned char>(filter));
      for (const unsigned char byte : ramp(bytes, y)) data.push_back(byte);
    }
    return pixels(data);
  }
  Png& pixels(const Bytes& data) {
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const unsigned char byte : data) {
      a = (a + byte) % 65521;
      b = (b + a) % 65521;
    }
    return chunk("IDAT", Seed().u8(0x78).u8(1).bytes(stored(data)).bytes(highFirst(b << 16 | a)));
  }
  Bytes input() {
    chunk("IEND", {});
    Bytes file = m_file;
    setPngSums(file);
    return Seed().u8(kSummedFile).bytes(file);
  }

 private:
  Seed m_file;
};

const std::string kRows = "\x28\0\x10\0US\2\0\1\0"s;
const std::string kPixels = "\xE0\x7F\x10\0OW\0\0\4\0\0\0abcd"s;
const std::string kItem = "\xFE\xFF\0\xE0"s;
const std::string kItemEnd = "\xFE\xFF\x0D\xE0\0\0\0\0"s;
const std::string kSequenceEnd = "\xFE\xFF\xDD\xE0\0\0\0\0"s;
const std::string kOpen = "\xFF\xFF\xFF\xFF"s;
const std::string kSequence = "\x08\0\x40\x11SQ\0\0"s;

enum Encoding { kBare = 0, kExplicit = 1, kSwapped = 3 };

Bytes dataSet(const std::string& text, Encoding encoding = kExplicit) {
  return Seed().u8(kDataSet).u8(encoding).text(text);
}

Bytes dicom(const std::string& syntax, const std::string& text) {
  const std::string padded = syntax.size() % 2 == 0 ? syntax : syntax + '\0';
  return Seed()
      .u8(kFile)
      .bytes(Bytes(128))
      .text("DICM\2\0\x10\0UI"s)
      .u16(static_cast<int>(padded.size()))
      .text(padded)
      .text(text);
}

Bytes rle(int segments, std::initializer_list<int> begins, std::size_t size) {
  Seed seed;
  seed.u8(kRle).u8(segments).i32(segments);
  for (const int begin : begins) seed.i32(begin);
  Bytes bytes = seed;
  bytes.resize(2 + size);
  return bytes;
}

enum Model { kGreyModel, kRgb, kYbrFull, kYbrFull422 };
enum Flags { kNone = 0, kSigned = 1, kPlanar = 2 };

Seed frame(Kind kind, Model model, int allocated, int bitsStored, int highBit, Flags flags = kNone) {
  Seed seed;
  return seed.u8(kind).u16(4).u16(3).u8(model).u8(allocated).u8(bitsStored).u8(highBit).u8(flags);
}

void addPnm(Seeds& seeds) {
  seeds["pgm"] = file("P5\n4 3\n255\n", ramp(12));
  seeds["pgm_of_5_bits"] = file("P5 3 2 31\n", ramp(6));
  seeds["pgm_of_12_bits"] = file("P5\n# 12 bits\n2 2 # a side\n4095\n", {0, 1, 1, 2, 15, 255, 0, 0});
  seeds["pgm_of_16_bits"] = file("P5\n2 2\n65535\n", ramp(8, 200));
  seeds["pgm_of_1_bit"] = file("P5 2 2 1\n", {0, 1, 1, 0});
  seeds["pgm_with_a_sample_above_its_largest"] = file("P5 2 2 100\n", {0, 101, 1, 0});
  seeds["pgm_whose_largest_needs_17_bits"] = file("P5 1 1 65536\n", {0, 1});
  seeds["pgm_that_is_cut"] = file("P5\n4 3\n255\n", ramp(11));
  seeds["pgm_with_sides_that_are_too_long"] = file("P5 65536 4294967297 255\n", ramp(4));
  seeds["pgm_with_zeros_in_front"] = file("P5 0000000002 000001 00255\n", ramp(2));
  seeds["pgm_whose_comment_has_no_end"] = file("P5 2 2 #255\n", ramp(4));
  seeds["pgm_with_a_comment_behind_its_header"] = file("P5 2 2 255#\n", ramp(5));
  seeds["ppm"] = file("P6\n2 2\n255\n", ramp(12));
  seeds["ppm_of_16_bits"] = file("P6\n2 2\n65535\n", ramp(24));
  seeds["ascii_pgm"] = file("P2 2 2 255 1 2 3 4");
}

void addPng(Seeds& seeds) {
  seeds["png_grey8"] = Png().header(4, 3, 8, Png::kGrey).rows(3, 4).input();
  seeds["png_grey1"] = Png().header(11, 3, 1, Png::kGrey).rows(3, 2).input();
  seeds["png_grey4_filtered"] = Png().header(5, 4, 4, Png::kGrey).rows(4, 3, 4).input();
  seeds["png_grey16"] = Png().header(3, 2, 16, Png::kGrey).rows(2, 6).input();
  // The three ways to make 16 bits of 12, and 16 bits that are not made so.
  const std::pair<const char*, int> scaled[] = {{"_zeros_behind", 0x1A00},
                                                {"_repeated", 0x1A01},
                                                {"_in_proportion", 0x1A02},
                                                {"_in_name_only", 0x1A03}};
  for (const auto& [how, sample] : scaled) {
    seeds["png_grey16_of_12_bits"s + how] =
        Png()
            .header(2, 2, 16, Png::kGrey)
            .chunk("sBIT", {12})
            .pixels({0, static_cast<unsigned char>(sample >> 8), static_cast<unsigned char>(sample & 0xFF), 0,
                     0, 0, 0, 0, 0xFF, 0xFF})
            .input();
  }
  seeds["png_colour"] = Png().header(3, 2, 8, Png::kColour).rows(2, 9, 1).input();
  seeds["png_colour16"] = Png().header(1, 1, 16, Png::kColour).rows(1, 6).input();
  seeds["png_palette"] = Png()
                             .header(5, 2, 2, Png::kPalette)
                             .chunk("PLTE", ramp(12))
                             .chunk("tRNS", {255, 255})
                             .rows(2, 2)
                             .input();
  seeds["png_palette_of_fewer_colours_than_pixels_name"] =
      Png().header(4, 1, 8, Png::kPalette).chunk("PLTE", ramp(6)).rows(1, 4).input();
  seeds["png_opaque"] = Png().header(2, 1, 8, Png::kGreyAlpha).pixels({0, 7, 255, 8, 255}).input();
  seeds["png_transparent"] = Png().header(2, 1, 8, Png::kColourAlpha).rows(1, 8).input();
  seeds["png_a_little_transparent"] =
      Png().header(1, 1, 16, Png::kGreyAlpha).pixels({0, 1, 2, 0xFF, 0xFE}).input();
  seeds["png_transparent_grey"] =
      Png().header(2, 1, 16, Png::kGrey).chunk("tRNS", {0, 1}).pixels({0, 0, 2, 0, 3}).input();
  seeds["png_interlaced"] =
      Png()
          .header(3, 2, 8, Png::kGrey, 1)
          .pixels({0, 1, 0, 2, 0, 3, 0, 4, 5, 6})  // passes 1, 5 and 6, and the second row
          .input();
  seeds["png_whose_rows_are_cut"] = Png().header(4, 3, 8, Png::kGrey).rows(2, 4).input();
  seeds["png_with_a_header_that_is_not_first"] =
      Png()
          .chunk("prVt", Seed().bytes(highFirst(9)).bytes(highFirst(1)))
          .header(1, 1, 8, Png::kGrey)
          .rows(1, 1)
          .input();
  seeds["png_that_claims_all_pixels"] = Png().header(65535, 65535, 8, Png::kGrey).rows(1, 4).input();
  for (const std::string name : {"eXIf", "pCAL", "sCAL", "tEXt"}) {
    Bytes claim = Png().header(1, 1, 8, Png::kGrey).chunk(name, Seed().text("a\0"s)).rows(1, 1).input();
    claim[34] = 0x60;  // the first byte of the chunk's length
    seeds["png_whose_" + name + "_claims_gigabytes"] = claim;
  }
  seeds["png_with_text"] = Png()
                               .header(1, 1, 8, Png::kGrey)
                               .chunk("tEXt", Seed().text("a\0b"s))
                               .chunk("zTXt", Seed().text("a\0\0\x78\1"s).bytes(stored({1, 2})))
                               .rows(1, 1)
                               .input();
  Bytes wrongSum = Png().header(4, 3, 8, Png::kGrey).rows(3, 4).input();
  wrongSum[0] = kFile;
  wrongSum.back() ^= 1U;
  seeds["png_with_a_wrong_sum"] = wrongSum;
}

void addDicom(Seeds& seeds) {
  seeds["dicom"] = dicom("1.2.840.10008.1.2.1", kRows + kPixels);
  seeds["dicom_without_representations"] =
      dicom("1.2.840.10008.1.2", "\x28\0\x10\0\2\0\0\0\1\0\xE0\x7F\x10\0\2\0\0\0ab"s);
  seeds["dicom_big_endian"] =
      dicom("1.2.840.10008.1.2.2", "\0\x28\0\x10US\0\2\0\1\x7F\xE0\0\x10OB\0\0\0\0\0\2ab"s);
  seeds["dicom_of_no_transfer_syntax"] = dicom("", kRows + kPixels);
  seeds["data_set"] = dataSet(kRows + kPixels + "what follows");
  seeds["data_set_with_open_sequences"] =
      dataSet(kSequence + kOpen + kItem + kOpen + kRows + kItemEnd + kSequenceEnd + kPixels);
  seeds["data_set_with_closed_sequences"] =
      dataSet(kSequence + "\x12\0\0\0"s + kItem + "\x0A\0\0\0"s + kRows + kPixels);
  seeds["data_set_with_an_unknown_sequence"] =
      dataSet("\x09\0\x40\x11UN\0\0"s + kOpen + kItem + kOpen + "\x08\0\x50\x11\0\0\0\0"s + kItemEnd +
              kSequenceEnd + kPixels);
  seeds["data_set_without_representations"] =
      dataSet("\x08\0\x40\x11\x10\0\0\0"s + kItem + "\x08\0\0\0"s + "\x08\0\x50\x11\0\0\0\0"s +
                  "\xE0\x7F\x10\0\2\0\0\0ab"s,
              kBare);
  seeds["data_set_big_endian"] = dataSet("\0\x08\x11\x40SQ\0\0"s + kOpen + "\xFF\xFE\xE0\0\0\0\0\0"s +
                                             "\xFF\xFE\xE0\xDD\0\0\0\0"s + "\x7F\xE0\0\x10OW\0\0\0\0\0\2ab"s,
                                         kSwapped);
  seeds["data_set_with_fragments"] = dataSet("\xE0\x7F\x10\0OB\0\0"s + kOpen + kItem + "\0\0\0\0"s + kItem +
                                             "\2\0\0\0ab"s + kSequenceEnd + "behind");
  seeds["data_set_whose_fragments_end_with_a_length"] = dataSet(
      "\xE0\x7F\x10\0OB\0\0"s + kOpen + kItem + "\0\0\0\0"s + "\xFE\xFF\xDD\xE0\2\0\0\0ab"s + kSequenceEnd);
  seeds["data_set_of_an_odd_length"] = dataSet("\xE0\x7F\x10\0OB\0\0\3\0\0\0abc"s);
  seeds["data_set_with_fragments_elsewhere"] =
      dataSet("\x28\0\x10\0OB\0\0"s + kOpen + kItem + "\0\0\0\0"s + kSequenceEnd + kPixels);
  seeds["data_set_whose_item_is_longer_than_its_sequence"] =
      dataSet(kSequence + "\x12\0\0\0"s + kItem + "\x0C\0\0\0"s + kRows + kRows + kPixels);
  seeds["data_set_with_a_length_to_the_limit_of_32_bits"] =
      dataSet("\xE0\x7F\x10\0OW\0\0\xFE\xFF\xFF\xFF"s + "abcd");
  seeds["data_set_with_floating_pixels"] = dataSet("\xE0\x7F\x08\0OF\0\0\4\0\0\0abcd"s + kPixels);
  const std::string level = kSequence + kOpen + kItem + kOpen;
  std::string deep;
  for (int i = 0; i < 33; ++i) deep += level;
  seeds["data_set_that_nests_too_deep"] = dataSet(deep);
}

void addFrames(Seeds& seeds) {
  seeds["rle_of_one_segment"] = rle(1, {64}, 70);
  seeds["rle_of_two_segments"] = rle(2, {64, 66}, 70);
  seeds["rle_of_two_segments_at_one_place"] = rle(2, {64, 64}, 70);
  seeds["rle_with_a_segment_in_its_header"] = rle(1, {63}, 70);
  seeds["rle_with_a_segment_behind_its_end"] = rle(3, {64, 66, 70}, 70);
  const std::string start = "\xFF\xD8\xFF\xFE\0\4\xFF\xC0"s;
  const std::string scan = "\xFF\xDA\0\2\7\xFF\0\xDA"s;
  seeds["jpeg"] = Seed().u8(kJpeg).text(start + "\xFF\xC3\0\x0B\x0C\1\2\3\4\1\0\x11\0"s + scan + scan);
  seeds["jpeg_ls"] = Seed().u8(kJpeg).text(start + "\xFF\xFF\xF7\0\x0B\x08\1\2\3\4\1\0\x11\0"s + scan);
  seeds["jpeg_whose_scan_comes_first"] =
      Seed().u8(kJpeg).text(start + scan + "\xFF\xC3\0\x0B\x0C\1\2\3\4\1\0\x11\0"s);
  seeds["frame_grey8"] = frame(kFrame, kGreyModel, 8, 8, 7).bytes(ramp(12));
  seeds["frame_grey12_signed"] = frame(kFrame, kGreyModel, 16, 12, 11, kSigned).bytes(ramp(24, 3));
  seeds["frame_grey10_high"] = frame(kFrame, kGreyModel, 16, 10, 15).bytes(ramp(24, 3));
  seeds["frame_grey16_signed"] = frame(kFrame, kGreyModel, 16, 16, 15, kSigned).bytes(ramp(24, 120));
  seeds["frame_grey1"] = frame(kFrame, kGreyModel, 8, 1, 3).bytes(ramp(12));
  seeds["frame_rgb"] = frame(kFrame, kRgb, 8, 8, 7).bytes(ramp(36));
  seeds["frame_rgb_planar"] = frame(kFrame, kRgb, 8, 8, 7, kPlanar).bytes(ramp(36));
  seeds["frame_ybr"] = frame(kFrame, kYbrFull, 8, 8, 7).bytes(ramp(36, 100));
  seeds["frame_ybr_422"] = frame(kFrame, kYbrFull422, 8, 8, 7).bytes(ramp(24, 100));
  seeds["frame_with_bits_outside_those_allocated"] = frame(kFrame, kGreyModel, 8, 12, 11).bytes(ramp(24));
  seeds["frame_palette"] = frame(kPaletteFrame, kGreyModel, 8, 8, 7)
                               .u16(2)
                               .u8(2)
                               .bytes(Bytes{1, 2})
                               .u8(3)
                               .bytes(Bytes{3, 4, 5})
                               .u8(1)
                               .bytes(Bytes{6})
                               .bytes(ramp(12));
  seeds["frame_palette_signed"] = frame(kPaletteFrame, kGreyModel, 16, 16, 15, kSigned)
                                      .u16(0x8000)
                                      .u8(1)
                                      .bytes(Bytes{1})
                                      .u8(1)
                                      .bytes(Bytes{3})
                                      .u8(1)
                                      .bytes(Bytes{6})
                                      .bytes(ramp(24, 120));
  seeds["deflated"] = Seed().u8(kDeflated).u16(10).bytes(stored(ramp(100)));
  seeds["deflated_to_the_limit"] = Seed().u8(kDeflated).u16(2).bytes(stored(ramp(32)));
  seeds["deflated_beyond_the_limit"] = Seed().u8(kDeflated).u16(2).bytes(stored(ramp(33)));
  seeds["deflated_runs"] = Seed().u8(kDeflated).u16(500).bytes(
      Bytes{0xED, 0xC1, 0x31, 0x01, 0x00, 0x00, 0x00, 0xC2, 0xA0, 0xF5, 0x4F,
            0x6D, 0x0A, 0x3F, 0xA0, 0,    0,    0,    0,    0x80, 0xB7, 0x01});
}

}  // namespace

Seeds pictureSeeds() {
  Seeds seeds;
  addPnm(seeds);
  addPng(seeds);
  addDicom(seeds);
  addFrames(seeds);
  seeds["nothing"] = {};
  return seeds;
}

}  // namespace ei4::fuzz
