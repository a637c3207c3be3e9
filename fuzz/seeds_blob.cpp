// Containers, good and bad, and compressed inputs in plain files and in containers.
#include "blob/blob_writer.h"
#include "encoder/ei4_writer.h"
#include "seeds.h"
#include "support/blob_builder.h"

namespace ei4::fuzz {

namespace {

using test::BlobBuilder;
using test::ramp;
using tools::BlobWriter;

/// Four reads: all of the first entry, its middle, the second one past its end, one in front of its start.
Bytes blobInput(const Bytes& container) {
  return Seed()
      .u8(0)
      .i32(0)
      .i32(0x7FFFFFFF)
      .u8(0)
      .i32(2)
      .i32(3)
      .u8(1)
      .i32(1)
      .i32(1000)
      .u8(0)
      .i32(-1)
      .i32(5)
      .bytes(container);
}

Bytes named(std::initializer_list<std::string_view> names) {
  BlobWriter writer;
  for (const std::string_view name : names) writer.entry(name, ramp(5, static_cast<int>(name.size())));
  return writer.bytes();
}

Bytes ei4File(const Bytes& stream, int preamble = tools::kShortestPreamble) {
  tools::Ei4Preamble fields;
  fields.length = preamble;
  return tools::writeEi4(fields, stream);
}

Bytes prepInput(int kind, int targetWidth, const Bytes& first, const Bytes& second = {}) {
  Seed seed;
  seed.u8(kind).i32(targetWidth);
  if (kind == 2) seed.u16(static_cast<int>(first.size()));
  return seed.bytes(first).bytes(second);
}

Bytes containerOf(std::string_view name, std::span<const unsigned char> payload) {
  return BlobWriter().entry(name, payload).bytes();
}

}  // namespace

Seeds blobSeeds() {
  Seeds seeds;
  const Bytes a = ramp(20);
  const Bytes b = ramp(7, 100);
  seeds["no_entries"] = blobInput(BlobWriter().bytes());
  seeds["two_entries"] = blobInput(BlobWriter().entry("a.ei4", a).entry("b.ei4", b).bytes());
  seeds["entry_and_chunk"] = blobInput(BlobWriter().entry("a.ei4", a).chunk("b.ei4", b).bytes());
  seeds["chunk_supersedes"] = blobInput(BlobWriter().entry("a.ei4", a).chunk("a.ei4", b).bytes());
  seeds["deletion"] = blobInput(BlobWriter().entry("a", a).entry("b", b).deletion("a").bytes());
  seeds["prefixes"] = blobInput(BlobWriter().entry("x#img", a).chunk("y#img", b).chunk("z#other", b).bytes());
  seeds["empty_entry"] = blobInput(BlobWriter().entry("a", Bytes()).bytes());
  seeds["folders"] = blobInput(named({"a/b/c", "a/d", "e"}));
  seeds["names_that_leave_the_folder"] =
      blobInput(named({"../outside/x", "a/../../outside/y", "..", ".", "a//b", "a/"}));
  seeds["absolute_names"] = blobInput(named({"/proc/self/cwd/../outside/x", "/", "//a"}));
  seeds["names_through_links"] = blobInput(named({"link/x", "link", "dangling", "kept", "link/../x"}));
  seeds["control_bytes_in_names"] =
      blobInput(named({"a\nb", "\x1b[2J", "\xc3\xa4", "\xff\xfe", "a\\b", "-f"}));
  seeds["names_in_use"] = blobInput(named({"hard", "pipe", "folder", "folder/x", "pipe/x", "Kept"}));
  seeds["own_container_and_temporary_files"] = blobInput(named({"container.erblb", ".erblb-1-0.tmp"}));
  seeds["a_file_where_a_folder_is_needed"] = blobInput(named({"a", "a/b", "b/c", "b"}));
  seeds["zero_byte_in_a_name"] =
      blobInput(BlobBuilder().entry(std::string_view("ab\0cd", 5), 4, 0).bytes(ramp(4)).build());
  seeds["name_of_255_bytes"] =
      blobInput(BlobBuilder().entry(std::string(255, 'n'), 2, 0).bytes(ramp(2)).build());
  seeds["name_of_256_bytes"] =
      blobInput(BlobBuilder().entry(std::string(256, 'n'), 2, 0).bytes(ramp(2)).build());
  seeds["chunk_name_of_263_bytes"] =
      blobInput(BlobBuilder().chunk("ERDELETE" + std::string(255, 'n')).build());
  seeds["chunk_name_of_264_bytes"] =
      blobInput(BlobBuilder().chunk("c", b).chunk(std::string(264, 'n')).build());
  seeds["overlapping_entries"] =
      blobInput(BlobBuilder().entry("a", 10, 0).entry("b", 10, 3).entry("c", 4, 5).bytes(ramp(13)).build());
  seeds["entry_behind_the_end"] = blobInput(BlobBuilder().entry("a", 10, 5).bytes(ramp(10)).build());
  seeds["offset_at_the_limit_of_64_bits"] =
      blobInput(BlobBuilder().entry("a", 0x7FFFFFFF, 0x7FFFFFFFFFFFFFFF).bytes(ramp(10)).build());
  seeds["negative_size"] = blobInput(BlobBuilder().entry("a", -1, 0).bytes(ramp(3)).build());
  seeds["negative_offset"] = blobInput(BlobBuilder().entry("a", 1, -1).bytes(ramp(3)).build());
  seeds["negative_chunk_size"] = blobInput(BlobBuilder().chunk("c", b).chunkHead("d", -1).build());
  seeds["chunk_size_beyond_the_file"] = blobInput(BlobBuilder().chunk("c", b).chunkHead("d", 1000).build());
  seeds["deletion_in_a_bad_chunk"] =
      blobInput(BlobBuilder().chunk("c", b).chunkHead("ERDELETEc", -1).build());
  seeds["negative_number_of_entries"] = blobInput(BlobBuilder().entryCount(-1).chunk("c", b).build());
  seeds["more_entries_stated_than_there_are"] =
      blobInput(BlobBuilder().entryCount(0x7FFFFFFF).entry("a", 0, 0).build());
  seeds["foreign_magic"] = blobInput(BlobBuilder().magic("ERBM").entry("a", 0, 0).build());
  seeds["version_2"] = blobInput(BlobBuilder().version(2).entry("a", 0, 0).build());
  seeds["nothing"] = blobInput({});
  return seeds;
}

Seeds prepSeeds() {
  Seeds seeds;
  const Bytes grey = ei4File(smallStream(24, 20, 1, 8));
  const Bytes grey12 = ei4File(smallStream(18, 18, 2, 12));
  const Bytes colour = ei4File(smallStream(16, 12, 3, 8));
  seeds["grey8"] = prepInput(0, 0, grey);
  seeds["grey8_thumbnail"] = prepInput(0, 8, grey);
  seeds["grey8_of_a_large_wish"] = prepInput(0, 1000, grey);
  seeds["grey8_of_a_negative_wish"] = prepInput(0, -1, grey);
  seeds["grey8_cut"] = prepInput(0, 0, Bytes(grey.begin(), grey.begin() + 90));
  seeds["grey12"] = prepInput(0, 0, grey12);
  seeds["colour"] = prepInput(0, 0, colour);
  seeds["colour_halved"] = prepInput(0, 8, colour);
  seeds["forty_bytes"] = prepInput(0, 0, Bytes(grey.begin(), grey.begin() + 40));
  seeds["forty_one_bytes"] = prepInput(0, 0, Bytes(grey.begin(), grey.begin() + 41));
  seeds["long_preamble_in_a_plain_file"] = prepInput(0, 0, ei4File(smallStream(9, 9, 1, 8), 32));
  Bytes odd = grey;
  odd[6] = 23;
  seeds["preamble_of_23_bytes"] = prepInput(0, 0, odd);
  odd = grey;
  for (std::size_t i = 8; i < 24; ++i) odd[i] = i % 4 < 2 ? 0 : 0xFF;  // not a number, four times
  seeds["window_of_no_number"] = prepInput(0, 0, odd);
  odd = grey;
  odd[24] = 'X';
  seeds["foreign_stream"] = prepInput(0, 0, odd);

  seeds["entry"] = prepInput(1, 0, containerOf("img.ei4", grey));
  seeds["entry_with_a_long_preamble"] =
      prepInput(1, 0, containerOf("img.ei4", ei4File(smallStream(9, 9, 1, 8), 40)));
  seeds["entry_that_is_missing"] = prepInput(1, 0, containerOf("other.ei4", grey));
  seeds["full_part_alone"] = prepInput(1, 0, containerOf("img.f.ei4", grey));
  const std::span<const unsigned char> whole(grey);
  for (const std::size_t split : {10U, 24U, 30U, 40U, 45U, 120U}) {
    seeds["two_parts_split_at_" + std::to_string(split)] = prepInput(
        2, 0, containerOf("img.f.ei4", whole.subspan(split)), containerOf("img.t.ei4", whole.first(split)));
  }
  // The last byte delivered is one that nobody gets: it shows where the stream is cut.
  seeds["two_parts_split_at_40_and_cut"] = prepInput(2, 0, containerOf("img.f.ei4", whole.subspan(40, 150)),
                                                     containerOf("img.t.ei4", whole.first(40)));
  seeds["two_parts_thumbnail"] =
      prepInput(2, 8, containerOf("img.f.ei4", whole.subspan(60)), containerOf("img.t.ei4", whole.first(60)));
  seeds["two_parts_the_first_empty"] =
      prepInput(2, 0, containerOf("img.f.ei4", grey), containerOf("img.t.ei4", {}));
  seeds["no_container"] = prepInput(1, 0, {});
  seeds["initial_part_whose_container_is_bad"] =
      prepInput(2, 0, containerOf("img.f.ei4", grey), BlobBuilder().magic("ERBM").build());

  // Long enough to be read in part: 8 KiB will do for a picture halved once, and 16 KiB for a thumbnail.
  const Bytes large = ei4File(smallStream(150, 140, 1, 8));
  seeds["read_in_part"] = prepInput(0, 140, large);
  seeds["two_parts_read_in_part"] =
      prepInput(2, 140, containerOf("img.f.ei4", std::span(large).subspan(4000)),
                containerOf("img.t.ei4", std::span(large).first(4000)));
  seeds["thumbnail_read_in_part"] =
      prepInput(1, 20, containerOf("img.ei4", ei4File(smallStream(150, 130, 2, 12))));

  // More pixels than so short an input may claim.
  const auto claim = [&grey](int width, int height) {
    Bytes file = grey;
    file[30] = static_cast<unsigned char>(width), file[31] = static_cast<unsigned char>(width >> 8);
    file[32] = static_cast<unsigned char>(height), file[33] = static_cast<unsigned char>(height >> 8);
    return file;
  };
  seeds["a_few_pixels_too_many"] = prepInput(0, 0, claim(8193, 8192));
  seeds["as_many_pixels_as_there_can_be"] = prepInput(0, 0, claim(65535, 65535));
  seeds["more_pixels_in_an_entry"] = prepInput(1, 0, containerOf("img.ei4", claim(65535, 65535)));
  return seeds;
}

}  // namespace ei4::fuzz
