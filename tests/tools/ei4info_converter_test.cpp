// What ei4info says, against what the converter does with the same inputs.
#include <gtest/gtest.h>

#include "container/blob_reader.h"
#include "container/file_reader.h"
#include "driver/prep_ei4.h"
#include "driver/settings.h"
#include "ei4info/image_facts.h"
#include "ei4info_images.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::info::Decodes;
using ei4::info::ImageFacts;
using ei4::test::Bytes;
using ei4::test::TempFolder;

std::vector<unsigned char> convertedPixels(const std::string& path, int width) {
  const CSize target(width, width);
  pImageFromEI4.reset();
  PrepEI4(path.c_str(), false, width > 0 ? &target : nullptr);
  if (!pImageFromEI4) return {};
  const unsigned char* pixels = pImageFromEI4->m_pBuffer;
  return {pixels, pixels + pImageFromEI4->m_nBufferSize};
}

// The inputs of the fuzz target "prep": u8 kind, i32 width, for kind 2 u16 size of the first file, then the files.
TEST(Ei4infoAndTheConverter, AgreeOnWhichInputsHoldAnImage) {
  int images = 0;
  int others = 0;
  for (const Bytes& input : ei4::test::corpusOf("prep")) {
    if (input.size() < 7) continue;
    const int kind = input[0] % 3;
    const std::size_t filesAt = kind == 2 ? 7 : 5;
    const Bytes files(input.begin() + static_cast<std::ptrdiff_t>(filesAt), input.end());
    const TempFolder folder;
    const std::size_t split = kind == 2 ? std::size_t{input[5]} + std::size_t{256} * input[6] : files.size();
    folder.write(kind == 0 ? "img.ei4" : "full.erblb", ei4::test::first(files, split));
    if (kind == 2) folder.write("initial.erblb", std::span(files).subspan(std::min(split, files.size())));
    const std::string path = folder.path("img.ei4");

    pImageFromEI4.reset();
    PrepEI4(path.c_str(), kind != 0, nullptr);
    ImageFacts facts;
    if (kind == 0) {
      FileReader reader(path.c_str());
      facts = ei4::info::inspectImage(reader);
    } else {
      BlobReader reader(path.c_str());
      facts = ei4::info::inspectImage(reader);
    }
    EXPECT_EQ(facts.decodes != Decodes::no, pImageFromEI4 != nullptr) << testing::PrintToString(facts.faults);
    ++(pImageFromEI4 ? images : others);
  }
  EXPECT_GT(images, 10);
  EXPECT_GT(others, 5);
}

// The bytes that are said to be read are all that the converter looks at: cut behind them, a file gives the same picture.
TEST(Ei4infoAndTheConverter, AgreeOnTheBytesThatASizeTakes) {
  const TempFolder folder;
  const Bytes file = ei4::test::ei4(ei4::test::codedStream(600, 500, 2, 12));
  const std::string whole = folder.write("whole.ei4", file);
  const ImageFacts facts = ei4::test::inspect(file);
  int cut = 0;
  for (const auto& size : facts.sizes) {
    const auto read = static_cast<std::size_t>(size.bytesRead);
    const std::string prefix = folder.write("prefix.ei4", ei4::test::first(file, read));
    for (const int width : {size.wantedFrom, size.wantedTo.value_or(0)}) {
      const auto pixels = convertedPixels(whole, width);
      EXPECT_EQ(csSrc, CSize(size.width, size.height));
      EXPECT_FALSE(pixels.empty());
      EXPECT_EQ(pixels, convertedPixels(prefix, width)) << size.factor;
    }
    if (read < file.size()) ++cut;
  }
  EXPECT_GE(cut, 4);
  // And no fewer would do: within the budget of the half size each byte holds detail.
  const auto& half = facts.sizes.at(1);
  folder.write("prefix.ei4", ei4::test::first(file, static_cast<std::size_t>(half.bytesRead) - 64));
  EXPECT_NE(convertedPixels(whole, half.wantedFrom),
            convertedPixels(folder.path("prefix.ei4"), half.wantedFrom));
}

}  // namespace
