// Coded streams, whole, lossy, cut and by hand, and headers for the level choice.

#include "encoder/gw_encoder.h"
#include "seeds.h"
#include "support/stream_builder.h"

namespace ei4::fuzz {

namespace {

using test::CodedStream;
using tools::ChunkOrder;
using tools::EncodeOptions;
using tools::Magic;
using tools::RunEnding;

Bytes smallPicture(int width, int height, int bytesPerPixel, int bits) {
  const unsigned most = (1U << bits) - 1;
  const int components = bytesPerPixel == 3 ? 3 : 1;
  std::uint32_t noise = 12345;
  Bytes pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width * components; ++x) {
      noise = noise * 1664525 + 1013904223;
      const auto ramp =
          static_cast<unsigned>(x + 2 * y) * most / static_cast<unsigned>(width * components + 2 * height);
      unsigned value = x < width * components / 2 ? ramp : most - ramp;
      if (noise >> 28 == 0) value = (noise >> 8) % (most + 1);
      pixels.push_back(static_cast<unsigned char>(value));
      if (bytesPerPixel == 2) pixels.push_back(static_cast<unsigned char>(value >> 8));
    }
  }
  return pixels;
}

Bytes coded(int width, int height, const EncodeOptions& options) {
  return tools::encode(smallPicture(width, height, options.bytesPerPixel, options.bitsPerPixel), width,
                       height, options);
}

Bytes input(int factor, int level, int cut, const Bytes& stream) {
  return Seed().u8(factor).i32(level).u16(cut).bytes(stream);
}

}  // namespace

Bytes smallStream(int width, int height, int bytesPerPixel, int bits) {
  EncodeOptions options;
  options.bytesPerPixel = bytesPerPixel;
  options.bitsPerPixel = bits;
  return coded(width, height, options);
}

Seeds streamSeeds() {
  Seeds seeds;
  const Bytes grey8 = smallStream(24, 20, 1, 8);
  const Bytes grey12 = smallStream(20, 17, 2, 12);
  const Bytes colour = smallStream(16, 12, 3, 8);
  seeds["grey8"] = input(0, 0, 0, grey8);
  seeds["grey8_halved"] = input(1, 0, 0, grey8);
  seeds["grey8_quartered"] = input(2, 0, 0, grey8);
  seeds["grey8_at_factor_7"] = input(7, 0, 0, grey8);
  seeds["grey8_at_a_negative_factor"] = input(-1, 0, 0, grey8);
  seeds["grey8_cut"] = input(0, 0, 40, grey8);
  seeds["grey8_without_coded_data"] = input(0, 0, 0xFFFF, grey8);
  seeds["grey8_first_five_chunks"] = input(0, 5, 0, grey8);
  seeds["grey8_first_nine_rows"] = input(0, -8, 0, grey8);
  seeds["grey8_of_5_bits"] = input(0, 0, 0, smallStream(24, 20, 1, 5));
  seeds["grey11_in_16_bits_of_storage"] = input(0, 0, 0, smallStream(20, 17, 2, 11));
  seeds["grey12"] = input(0, 0, 0, grey12);
  seeds["grey12_halved"] = input(1, 0, 0, grey12);
  seeds["grey12_cut"] = input(0, 0, 100, grey12);
  seeds["grey16"] = input(0, 0, 0, smallStream(17, 9, 2, 16));
  seeds["colour"] = input(0, 0, 0, colour);
  seeds["colour_halved_and_cut"] = input(1, 0, 60, colour);
  seeds["one_pixel"] = input(0, 0, 0, smallStream(1, 1, 1, 8));
  seeds["one_row"] = input(0, 0, 0, smallStream(70, 1, 1, 8));
  seeds["one_column_halved"] = input(1, 0, 0, smallStream(1, 70, 1, 8));
  seeds["wide_enough_for_the_first_skipped_level"] = input(1, 0, 0, smallStream(16, 16, 1, 4));
  seeds["wide_enough_for_two_skipped_levels"] = input(3, 0, 0, smallStream(33, 32, 1, 3));

  EncodeOptions options;
  options.magic = Magic::GW40;
  seeds["old_magic"] = input(0, 0, 0, coded(24, 20, options));
  options.lowestBit = 3;
  seeds["old_magic_lossy"] = input(0, 0, 0, coded(24, 20, options));
  options = {};
  options.levels = 0;
  seeds["no_levels"] = input(0, 0, 0, coded(12, 12, options));
  options.levels = 2;
  seeds["more_levels_than_it_is_worth"] = input(0, 0, 0, coded(12, 12, options));
  options = {};
  options.chunkOrder = ChunkOrder::ByOrder;
  options.ending = RunEnding::Terminator;
  seeds["by_order_with_terminators"] = input(0, 0, 0, coded(20, 16, options));
  options.chunkOrder = ChunkOrder::ByBitPosition;
  options.ending = RunEnding::EndlessRun;
  options.runsInEmptyChunks = true;
  seeds["by_bit_position_with_endless_runs"] = input(0, 0, 0, coded(20, 16, options));
  options.ending = RunEnding::OverLongRun;
  options.endCode = false;
  seeds["over_long_runs_without_an_end"] = input(0, 0, 0, coded(20, 16, options));

  // Rows long enough for the decoder to do several coefficients and samples at once.
  options = {};
  options.bitsPerPixel = 4;
  options.lowestBit = 2;
  seeds["wide"] = input(0, 0, 0, coded(133, 21, options));
  seeds["wide_halved"] = input(1, 0, 0, coded(133, 21, options));
  options.bytesPerPixel = 3;
  seeds["wide_colour"] = input(0, 0, 0, coded(70, 10, options));
  options.bytesPerPixel = 2;
  options.bitsPerPixel = 14;
  options.lowestBit = 11;
  seeds["wide_grey14"] = input(0, 0, 0, coded(133, 21, options));

  const test::StreamHeader line = {Magic::GW41, 1, 8, 3, 1};
  seeds["three_coefficients_by_hand"] = input(0, 0, 0,
                                              CodedStream(line)
                                                  .preamble(3, 0)
                                                  .significance(0, 0, "001 0 1 1")
                                                  .significance(0, 0, "1 0 01")
                                                  .refinement(0, 0, "0")
                                                  .refinement(0, 0, "0 0")
                                                  .significance(0, 0, "")
                                                  .significance(0, 0, "")
                                                  .refinement(0, 0, "1 1")
                                                  .end());
  seeds["nothing_but_a_preamble"] = input(0, 0, 0, CodedStream(line).preamble(-1, 0).end());
  seeds["no_pixels"] = input(0, 0, 0, CodedStream({Magic::GW41, 1, 8, 0, 5}).preamble(3, 1).end());
  seeds["four_bytes_a_pixel"] = input(0, 0, 0, CodedStream({Magic::GW41, 4, 8, 3, 3}).preamble(3, 0).end());
  return seeds;
}

Seeds bestFactorSeeds() {
  Seeds seeds;
  const auto header = [](int wanted, int nulls, const test::StreamHeader& fields) -> Bytes {
    return Seed().i32(wanted).u8(nulls).bytes(test::headerBytes(fields));
  };
  seeds["full_size"] = header(0, 0, {Magic::GW41, 2, 12, 2048, 2500});
  seeds["full_size_asked_without_sides"] = header(0, 31, {Magic::GW41, 2, 12, 2048, 2500});
  seeds["two_halvings"] = header(512, 0, {Magic::GW41, 2, 12, 2048, 2048});
  seeds["both_stages"] = header(256, 0, {Magic::GW41, 2, 12, 2048, 2500});
  seeds["a_budget_below_the_usual"] = header(300, 0, {Magic::GW41, 2, 12, 4096, 3328});
  seeds["one_halving"] = header(1000, 0, {Magic::GW40, 1, 8, 1024, 1024});
  seeds["colour"] = header(100, 0, {Magic::GW41, 3, 8, 3000, 2000});
  seeds["the_least_estimate"] = header(200, 0, {Magic::GW41, 1, 8, 400, 400});
  seeds["just_no_estimate"] = header(200, 0, {Magic::GW41, 1, 8, 398, 400});
  seeds["narrow_and_high"] = header(64, 0, {Magic::GW41, 1, 8, 40, 3000});
  seeds["wide_and_low"] = header(64, 0, {Magic::GW41, 1, 8, 3000, 16});
  seeds["wish_is_large_enough"] = header(4000, 0, {Magic::GW41, 1, 8, 3000, 2000});
  seeds["largest_sides"] = header(1, 0, {Magic::GW41, 2, 16, 65535, 65535});
  seeds["sides_of_zero"] = header(1, 0, {Magic::GW41, 2, 16, 0, 0});
  seeds["negative_wish"] = header(-5, 0, {Magic::GW41, 1, 8, 640, 480});
  seeds["all_bytes_set"] = header(100, 2, {Magic::GW40, 255, 255, 65535, 65535});
  seeds["foreign_magic"] = Seed().i32(9).u8(0).text("GW42").bytes(Bytes(12, 7));
  seeds["fifteen_bytes"] = Seed().i32(9).u8(0).text("GW41").bytes(Bytes(11, 7));
  seeds["no_bytes"] = Seed().i32(0).u8(0);
  return seeds;
}

}  // namespace ei4::fuzz
