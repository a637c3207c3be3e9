// docs/formats.md, "A stream by hand": the bits, the coefficients and the pixels that the page works out.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "docs/page.h"
#include "driver/convertab.h"
#include "driver/prep_ei4.h"
#include "driver/settings.h"
#include "encoder/bit_writer.h"
#include "encoder/forward_transform.h"
#include "encoder/gw_encoder.h"
#include "encoder/run_code.h"
#include "gwav4/header.h"
#include "gwav4/wavelet_decoder.h"
#include "reference/naive_decoder.h"
#include "support/stream_decode.h"

namespace ei4::test {
namespace {

constexpr std::size_t kPreambleBytes = 24;
constexpr const char* kTiny = "examples/tiny.ei4";

std::string tinyPath() { return (docsFolder() / kTiny).string(); }

/// The stream of the file's first `bytes` bytes.
Bytes streamOf(std::size_t bytes) {
  const Bytes file = fileBytes(tinyPath());
  return {file.begin() + kPreambleBytes, file.begin() + static_cast<std::ptrdiff_t>(bytes)};
}
Bytes wholeStream() { return streamOf(fileBytes(tinyPath()).size()); }

std::map<std::string, std::string> listedFields() {
  std::map<std::string, std::string> fields;
  for (const HexLine& line : hexLines(formatsPage().only("hex", kTiny))) fields[line.field] = line.meaning;
  return fields;
}

std::vector<BitLine> listedBits() { return bitLines(formatsPage().only("bits", kTiny)); }

std::vector<int> pixelsOf(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

/// What a directory line says in words.
struct StatedEntry {
  tools::ChunkId id;
  std::size_t bits = 0;
  int position = 0;
};
StatedEntry statedEntry(const std::string& text) {
  StatedEntry entry;
  char kind[16];
  if (std::sscanf(text.c_str(), "plane %d, order %d, %15[a-z], %zu bits: position %d", &entry.id.plane,
                  &entry.id.order, kind, &entry.bits, &entry.position) != 5)
    throw std::runtime_error("no entry: " + text);
  entry.id.kind =
      std::string_view(kind) == "refinement" ? tools::ChunkKind::Refinement : tools::ChunkKind::Significance;
  return entry;
}

std::vector<StatedEntry> statedEntries() {
  std::vector<StatedEntry> entries;
  for (const BitLine& line : listedBits()) {
    if (line.field == "entry") entries.push_back(statedEntry(line.meaning));
  }
  return entries;
}

/// The bits of "3 -, 0 +, 4": runs, each but the last one with the sign behind it.
tools::BitWriter runBits(const std::string& text) {
  tools::BitWriter bits;
  std::istringstream runs(text);
  for (std::string run; std::getline(runs, run, ',');) {
    tools::putRun(bits, std::stoul(run));
    if (run.ends_with('+') || run.ends_with('-')) bits.put(run.ends_with('-') ? 1 : 0, 1);
  }
  return bits;
}

TEST(TinyStream, HasTheBitsOfItsBytes) {
  tools::BitWriter bits;
  for (const BitLine& line : listedBits()) {
    EXPECT_EQ(line.offset, bits.bitCount());
    bits.append(tools::bitsFrom(line.bits()));
  }
  const Bytes stream = wholeStream();
  EXPECT_EQ(bits.bytes(), Bytes(stream.begin() + zel::gwav4::kHeaderBytes, stream.end()));
}

TEST(TinyStream, HasTheStatedEntries) {
  std::map<std::pair<int, tools::ChunkKind>, int> next;
  const std::vector<BitLine> lines = listedBits();
  const int top = static_cast<int>(valueOf(lines.at(0).bits()));
  EXPECT_EQ(lines[0].meaning, std::to_string(top));
  EXPECT_EQ(lines.at(1).meaning, std::to_string(valueOf(lines[1].bits())));
  for (std::size_t i = 2; i < lines.size(); ++i) {
    if (lines[i].field != "entry") continue;
    const StatedEntry stated = statedEntry(lines[i].meaning);
    ASSERT_EQ(lines[i].groups.size(), 4U) << lines[i].meaning;
    EXPECT_EQ(valueOf(lines[i].groups[0]), static_cast<std::uint64_t>(stated.id.plane));
    EXPECT_EQ(valueOf(lines[i].groups[1]), static_cast<std::uint64_t>(stated.id.order));
    EXPECT_EQ(valueOf(lines[i].groups[2]), static_cast<std::uint64_t>(stated.id.kind));
    EXPECT_EQ(valueOf(lines[i].groups[3]), stated.bits);
    const BitLine& behind = lines.at(i + 1);
    EXPECT_EQ(behind.field == "chunk" ? behind.bits().size() : 0U, stated.bits) << lines[i].meaning;

    const bool refines = stated.id.kind == tools::ChunkKind::Refinement;
    const auto series = next.try_emplace({stated.id.order, stated.id.kind}, refines ? top - 1 : top).first;
    EXPECT_EQ(stated.position, series->second--) << lines[i].meaning;
  }
}

TEST(TinyStream, HasTheStatedRuns) {
  int chunks = 0;
  for (const BitLine& line : listedBits()) {
    if (line.field != "chunk" || line.meaning.starts_with("for ")) continue;
    const tools::BitWriter expected = runBits(line.meaning);
    EXPECT_EQ(tools::bitsFrom(line.bits()).bytes(), expected.bytes()) << line.meaning;
    EXPECT_EQ(line.bits().size(), expected.bitCount()) << line.meaning;
    ++chunks;
  }
  EXPECT_EQ(chunks, 4);
}

TEST(TinyStream, HasTheStatedCoefficients) {
  const Bytes stream = wholeStream();
  const auto header = zel::gwav4::parseHeader(stream.data());
  const int width = header.xSize;
  const int height = header.ySize;
  zel::gwav4::CBitReader reader(stream.data() + zel::gwav4::kHeaderBytes,
                                stream.size() - zel::gwav4::kHeaderBytes);
  zel::gwav4::CWaveletDecoder<short, zel::gwav4::CFilter5_3<short>> decoder(1, width, height, 0, 0, 0);
  ASSERT_EQ(decoder.readWavelet(reader, 0, false), zel::gwav4::kComplete);
  std::vector<short> plane(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  decoder.copyPlane(0, plane.data());

  const std::vector<int> coefficients = formatsPage().numbers("coefficients");
  EXPECT_EQ(std::vector<int>(plane.begin(), plane.end()), coefficients);

  const std::vector<int> orders = formatsPage().numbers("orders");
  ASSERT_EQ(orders.size(), coefficients.size());
  for (int order = 0; order <= 1; ++order) {
    std::vector<int> sequence;
    for (std::size_t i = 0; i < orders.size(); ++i) {
      if (orders[i] == order) sequence.push_back(coefficients[i]);
    }
    EXPECT_EQ(sequence, formatsPage().numbers("order " + std::to_string(order)));
  }
}

// The forward transform of one row alone undoes just that row.
TEST(TinyStream, HasTheStatedColumns) {
  constexpr std::ptrdiff_t kWidth = 5;
  const std::vector<int> pixels = formatsPage().numbers("pixels");
  std::vector<int> columns;
  for (auto row = pixels.begin(); row != pixels.end(); row += kWidth) {
    std::vector<std::int32_t> samples(row, row + kWidth);
    tools::forwardTransform(samples.data(), kWidth, 1, 1);
    columns.insert(columns.end(), samples.begin(), samples.end());
  }
  EXPECT_EQ(columns, formatsPage().numbers("columns"));
}

TEST(TinyStream, DecodesToTheStatedPixels) {
  const std::vector<int> pixels = formatsPage().numbers("pixels");
  const DecodedPicture decoded = decodeStream(wholeStream());
  EXPECT_EQ(decoded.status, zel::gwav4::kComplete);
  EXPECT_EQ(pixelsOf(decoded.pixels), pixels);
  EXPECT_EQ(pixelsOf(decodeNaively(wholeStream(), 0, 0).pixels), pixels);
}

TEST(TinyStream, IsWhatTheEncoderMakesOfThePixelsInThisSequence) {
  const std::vector<int> pixels = formatsPage().numbers("pixels");
  const auto fields = listedFields();
  tools::EncodeOptions options;
  options.bitsPerPixel = std::stoi(fields.at("bitsPerPixel"));
  options.levels = 1;
  options.chunkOrder = tools::ChunkOrder::Custom;
  for (const StatedEntry& entry : statedEntries()) options.customOrder.push_back(entry.id);
  options.endCode = true;
  EXPECT_EQ(tools::encode(Bytes(pixels.begin(), pixels.end()), std::stoi(fields.at("xSize")),
                          std::stoi(fields.at("ySize")), options),
            wholeStream());
}

TEST(TinyStream, CutOffDecodesToTheStatedPixels) {
  int cuts = 0;
  for (const Block& block : formatsPage().ofKind("values")) {
    std::size_t bytes = 0;
    if (std::sscanf(block.name.c_str(), "first %zu bytes", &bytes) != 1) continue;
    const Bytes stream = streamOf(bytes);
    const std::vector<int> pixels = formatsPage().numbers(block.name);
    const DecodedPicture decoded = decodeStream(stream);
    EXPECT_EQ(decoded.status, zel::gwav4::kPartial) << block.name;
    EXPECT_EQ(pixelsOf(decoded.pixels), pixels) << block.name;
    EXPECT_EQ(pixelsOf(decodeNaively(stream, 0, 0).pixels), pixels) << block.name;
    ++cuts;
  }
  EXPECT_EQ(cuts, 2);
}

TEST(TinyEi4, IsWrittenThroughItsWindow) {
  const std::string path = tinyPath();
  ASSERT_TRUE(PrepEI4(path.c_str(), false, nullptr));
  const Convertab table = CreateConvertab(dIntercept, dSlope, nWindow, nLevel, /*invert=*/0, /*inBits=*/8,
                                          /*shift=*/0, /*outBits=*/8, /*tableBits=*/8);
  const auto* const entries = static_cast<const unsigned char*>(table.get());
  std::vector<int> written;
  for (const int pixel : formatsPage().numbers("pixels")) written.push_back(entries[pixel]);
  EXPECT_EQ(written, formatsPage().numbers("written"));
  pImageFromEI4.reset();
}

TEST(TinyEi4, GivesItsWindowAndItsPixels) {
  const std::string path = tinyPath();
  ASSERT_TRUE(PrepEI4(path.c_str(), false, nullptr));
  const auto fields = listedFields();
  EXPECT_EQ(dIntercept, std::stod(fields.at("intercept")));
  EXPECT_EQ(dSlope, std::stod(fields.at("slope")));
  EXPECT_EQ(nWindow, std::stoi(fields.at("window")));
  EXPECT_EQ(nLevel, std::stoi(fields.at("level")));
  ASSERT_NE(pImageFromEI4, nullptr);
  EXPECT_EQ(pImageFromEI4->m_Size, CSize(std::stoi(fields.at("xSize")), std::stoi(fields.at("ySize"))));
  const auto* const bytes = static_cast<const unsigned char*>(pImageFromEI4->m_pBuffer);
  EXPECT_EQ(std::vector<int>(bytes, bytes + pImageFromEI4->m_nBufferSize), formatsPage().numbers("pixels"));
  pImageFromEI4.reset();
}

}  // namespace
}  // namespace ei4::test
