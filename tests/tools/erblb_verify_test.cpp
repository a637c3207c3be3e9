// erblb verify run as a program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "blob/blob_writer.h"
#include "encoder/ei4_writer.h"
#include "encoder/gw_encoder.h"
#include "support/blob_erblb_run.h"
#include "test_pictures.h"

namespace {

using ei4::test::BlobBuilder;
using ei4::test::ErblbTest;
using ei4::test::Look;
using ei4::test::ramp;
using ei4::tools::BlobWriter;
using testing::HasSubstr;
using Bytes = std::vector<unsigned char>;

Bytes image(int width = 64, int height = 48) {
  const auto pixels = ei4::test::testPicture(width, height, 1, 8, Look::Smooth);
  return ei4::tools::writeEi4({}, ei4::tools::encode(pixels, width, height, {}));
}

class ErblbVerify : public ErblbTest {};

TEST_F(ErblbVerify, PrintsALineForASoundContainer) {
  BlobWriter()
      .entry("a", ramp(5))
      .chunk("b", ramp(4))
      .chunk("a", ramp(2))
      .deletion("b")
      .writeTo(folder.path("x"));
  const auto done = run({"verify", "x"});
  EXPECT_EQ(done.status, 0);
  EXPECT_EQ(done.err, "");
  EXPECT_EQ(done.out, "x: sound: 1 entry, 1 superseded, 1 deleted\n");
}

TEST_F(ErblbVerify, TellsEachFaultAndWhetherTheConverterForgivesIt) {
  folder.write("forgiven", BlobBuilder().chunk("a\n", ramp(3)).chunkHead("b", 9).build());
  folder.write("refused", BlobBuilder().entry("a", 9, 0).build());
  BlobWriter().writeTo(folder.path("sound"));
  const auto done = run({"verify", "forgiven", "missing", "refused", "sound"});
  EXPECT_EQ(done.status, 1);
  EXPECT_EQ(done.out,
            "forgiven:128: note: a\\x0a has control characters in its name, or bytes that are no UTF-8\n"
            "forgiven:139: fault: b states 9 bytes, of which 0 are there; the last 7 bytes of the file are "
            "out of reach\n"
            "forgiven: 1 fault, readable to the converter, 1 note: 1 entry, 0 superseded, 0 deleted\n"
            "refused:128: fault: a reaches past the end of the file\n"
            "refused: 1 fault, refused by the converter: 1 entry, 0 superseded, 0 deleted\n"
            "sound: sound: 0 entries, 0 superseded, 0 deleted\n");
  EXPECT_EQ(done.err,
            "erblb: missing: No such file or directory\n"
            "erblb: 3 of 4 containers are not sound\n");
}

TEST_F(ErblbVerify, TakesNotesForNoFault) {
  folder.write("x", BlobBuilder().chunk("ERDELETEa").build());
  const auto done = run({"verify", "x"});
  EXPECT_EQ(done.status, 0);
  EXPECT_THAT(done.out, HasSubstr("x: sound, 1 note: 0 entries"));
}

TEST_F(ErblbVerify, DoesNotWaitForAPipe) {
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  runFailing({"verify", "pipe"}, "pipe: is no regular file");
}

TEST_F(ErblbVerify, LooksAtImagesWhenAsked) {
  Bytes cut = image();
  cut.resize(300);
  Bytes foreign = image();
  foreign[24] = 'X';
  BlobWriter()
      .entry("good.ei4", image())  // a record of 14 bytes and the name, from byte 128 on
      .entry("cut.ei4", cut)
      .entry("foreign.ei4", foreign)
      .entry("short.ei4", ramp(40))
      .entry("report.txt", ramp(5))
      .writeTo(folder.path("x"));
  EXPECT_EQ(run({"verify", "x"}).status, 0);
  const auto done = run({"verify", "--images", "x"});
  EXPECT_EQ(done.status, 1);
  EXPECT_THAT(done.out, HasSubstr("x:150: fault: cut.ei4 the data ends within"));
  EXPECT_THAT(done.out,
              HasSubstr("fault: foreign.ei4 has a stream header that begins with neither GW40 nor GW41\n"));
  EXPECT_THAT(done.out, HasSubstr("fault: short.ei4 has 40 bytes; 40 or less are no image\n"));
  EXPECT_THAT(done.out,
              HasSubstr("readable to the converter: 5 entries, 0 superseded, 0 deleted, 4 images\n"));
}

TEST_F(ErblbVerify, ReadsImagesInTwoPartsAsTheConverterDoes) {
  const Bytes file = image();
  const auto whole = std::span(file);
  BlobWriter()
      .entry("a.t.ei4", whole.first(300))
      .entry("b.t.ei4", whole.first(40))
      .writeTo(folder.path("initial.erblb"));
  BlobWriter().entry("a.f.ei4", whole.subspan(300)).writeTo(folder.path("full.erblb"));
  const auto sound = run({"verify", "-i", "full.erblb"});
  EXPECT_EQ(sound.status, 0);
  EXPECT_EQ(sound.out, "full.erblb: sound: 1 entry, 0 superseded, 0 deleted, 1 image\n");
  EXPECT_EQ(run({"verify", "-i", folder.path("full.erblb")}).status, 0);

  runQuietly({"append", "full.erblb", "b.f.ei4=full.erblb"});
  EXPECT_THAT(run({"verify", "-i", "full.erblb"}).out,
              HasSubstr("fault: b.f.ei4 has a first part without any coded data"));

  BlobWriter().entry("a.f.ei4", whole.subspan(300)).writeTo(folder.path("other.erblb"));
  const auto other = run({"verify", "-i", "other.erblb"});
  EXPECT_EQ(other.status, 0);
  EXPECT_THAT(other.out, HasSubstr("note: a.f.ei4 is the second part of an image"));
}

TEST_F(ErblbVerify, TakesAFirstPartThatEndsEarlyForGood) {
  const Bytes file = image();
  BlobWriter().entry("a.t.ei4", std::span(file).first(300)).writeTo(folder.path("initial.erblb"));
  const auto done = run({"verify", "-i", "initial.erblb"});
  EXPECT_EQ(done.status, 0) << done.out;
}

TEST_F(ErblbVerify, DoesNotReadABottomlessPitOfOverlappingImages) {
  BlobBuilder builder;
  const Bytes file = image(512, 512);
  const int count = 2 + (1 << 26) / static_cast<int>(file.size());
  for (int i = 0; i < count; ++i)
    builder.entry(std::to_string(i) + ".ei4", static_cast<std::int32_t>(file.size()), 0);
  folder.write("x", builder.bytes(file).build());
  const auto done = run({"verify", "-i", "x"});
  EXPECT_EQ(done.status, 1);
  EXPECT_THAT(done.out, HasSubstr("x:0: fault: has images that overlap and together hold "));
}

}  // namespace
