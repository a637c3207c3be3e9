#include "container/blob_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>

#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::BlobBuilder;
using ei4::test::ramp;
using ei4::test::TempFolder;
using Bytes = std::vector<unsigned char>;

class BlobReaderTest : public testing::Test {
 protected:
  void full(const BlobBuilder& builder) { folder.write("full.erblb", builder.build()); }
  void initial(const BlobBuilder& builder) { folder.write("initial.erblb", builder.build()); }
  BlobReader over(const std::string& name) { return BlobReader(folder.path(name).c_str()); }

  TempFolder folder;
  Bytes buffer = Bytes(4096);
};

TEST_F(BlobReaderTest, HasNoLengthWithoutAFolderInItsPath) {
  full(BlobBuilder().chunk("a.ei4", ramp(100)));
  EXPECT_EQ(BlobReader(nullptr).getLength(), -1);
  EXPECT_EQ(BlobReader("").getLength(), -1);
  EXPECT_EQ(BlobReader("a.ei4").getLength(), -1);
}

TEST_F(BlobReaderTest, HasNoLengthWithoutAFullContainer) {
  initial(BlobBuilder().chunk("a.t.ei4", ramp(100)));
  auto reader = over("a.ei4");
  EXPECT_EQ(reader.getLength(), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), -1);
  EXPECT_EQ(reader.skipBytes(0), -1);
}

TEST_F(BlobReaderTest, HasNoLengthWhenTheFullContainerIsBad) {
  full(BlobBuilder().entry("a.ei4", -1, 0));
  testing::internal::CaptureStderr();
  EXPECT_EQ(over("a.ei4").getLength(), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "negative value in size or offset\n");
}

TEST_F(BlobReaderTest, HasLengthZeroWithoutTheEntry) {
  full(BlobBuilder().chunk("b.ei4", ramp(100)));
  initial(BlobBuilder().chunk("a.t.ei4", ramp(100)));
  for (const char* name : {"a.ei4", "a.raw", "", "a", "i4", "ei4"}) {
    auto reader = over(name);
    EXPECT_EQ(reader.getLength(), 0) << name;
    EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), -1) << name;
    EXPECT_EQ(reader.skipBytes(0), -1) << name;
  }
}

TEST_F(BlobReaderTest, LooksForPartsOfNamesInEi4Only) {
  full(BlobBuilder().chunk("a.f.ei4", ramp(100)).chunk("f.ei4", ramp(50)));
  EXPECT_EQ(over("a.EI4").getLength(), 0);
  EXPECT_EQ(over("a.ei4").getLength(), 100);
  EXPECT_EQ(over("ei4").getLength(), 50);  // an empty stem
}

TEST_F(BlobReaderTest, PrefersTheWholeEntryWhateverTheInitialContainerHolds) {
  full(BlobBuilder().chunk("a.ei4", ramp(100, 7)).chunk("a.f.ei4", ramp(10)));
  initial(BlobBuilder().chunk("a.t.ei4", ramp(50)));
  auto reader = over("a.ei4");
  EXPECT_EQ(reader.getLength(), 100);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 4096), 100);
  EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 100), ramp(100, 7));
}

TEST_F(BlobReaderTest, ReadsAWholeEntryInSequence) {
  full(BlobBuilder().chunk("a.ei4", ramp(100)));
  auto reader = over("a.ei4");
  EXPECT_EQ(reader.readBytes(buffer.data(), 3, 24), 24);
  EXPECT_EQ(buffer[3], 0);
  EXPECT_EQ(reader.skipBytes(8), 8);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), 1);
  EXPECT_EQ(buffer[0], 32);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1000), 67);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), 0);
}

TEST_F(BlobReaderTest, SkipsWithinItsLengthOnly) {
  full(BlobBuilder().chunk("a.ei4", ramp(100)));
  auto reader = over("a.ei4");
  EXPECT_EQ(reader.skipBytes(101), -1);
  EXPECT_EQ(reader.skipBytes(INT_MAX), -1);
  EXPECT_EQ(reader.skipBytes(-1), -1);
  EXPECT_EQ(reader.skipBytes(99), 99);
  EXPECT_EQ(reader.skipBytes(2), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 2), 1);  // the failed skips left the position at 99
  EXPECT_EQ(buffer[0], 99);
  EXPECT_EQ(reader.skipBytes(0), 0);
  EXPECT_EQ(reader.skipBytes(INT_MIN), -1);
}

TEST_F(BlobReaderTest, RefusesBuffersThatCannotHoldAnything) {
  full(BlobBuilder().chunk("a.ei4", ramp(100)).chunk("b.f.ei4", ramp(100)));
  initial(BlobBuilder().chunk("b.t.ei4", ramp(100)));
  for (const char* name : {"a.ei4", "b.ei4"}) {
    auto reader = over(name);
    EXPECT_EQ(reader.readBytes(nullptr, 0, 1), -1);
    EXPECT_EQ(reader.readBytes(buffer.data(), -1, 1), -1);
    EXPECT_EQ(reader.readBytes(buffer.data(), 0, -1), 0);
    EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), 1);
    EXPECT_EQ(buffer[0], 0);  // still at the start
  }
}

TEST_F(BlobReaderTest, ReadsTheFullPartAloneWithoutAnInitialPart) {
  full(BlobBuilder().chunk("a.f.ei4", ramp(1000)));
  EXPECT_EQ(over("a.ei4").getLength(), 1000);  // no initial container
  initial(BlobBuilder().chunk("b.t.ei4", ramp(20)));
  EXPECT_EQ(over("a.ei4").getLength(), 1000);  // no such entry in it
  initial(BlobBuilder().magic("nope"));
  EXPECT_EQ(over("a.ei4").getLength(), 1000);  // a bad one
  initial(BlobBuilder().chunk("a.t.ei4"));
  auto reader = over("a.ei4");  // an empty part
  EXPECT_EQ(reader.getLength(), 1000);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 30), 30);
  EXPECT_EQ(buffer[29], 29);
}

// a.ei4 in two parts: 200 bytes from 0 on, 1000 bytes from 50 on.
class BlobReaderOfTwoParts : public BlobReaderTest {
 protected:
  void SetUp() override {
    full(BlobBuilder().chunk("a.f.ei4", ramp(1000, 50)));
    initial(BlobBuilder().chunk("a.t.ei4", ramp(200)));
    reader = std::make_unique<BlobReader>(folder.path("a.ei4").c_str());
  }
  int read(int count, int bufferOffset = 0) { return reader->readBytes(buffer.data(), bufferOffset, count); }
  std::unique_ptr<BlobReader> reader;
};

TEST_F(BlobReaderOfTwoParts, AddsTheirSizes) { EXPECT_EQ(reader->getLength(), 1200); }

TEST_F(BlobReaderOfTwoParts, ReadsTheInitialPartEvenly) {
  EXPECT_EQ(read(24), 24);
  EXPECT_EQ(read(16, 24), 16);
  EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 40), ramp(40));
  EXPECT_EQ(read(0), 0);
}

TEST_F(BlobReaderOfTwoParts, CrossesIntoTheFullPartInOneRead) {
  ASSERT_EQ(read(24), 24);
  ASSERT_EQ(reader->skipBytes(16), 16);
  EXPECT_EQ(read(2000, 5), 1160);
  EXPECT_EQ(Bytes(buffer.begin() + 5, buffer.begin() + 165), ramp(160, 40));
  EXPECT_EQ(Bytes(buffer.begin() + 165, buffer.begin() + 1165), ramp(1000, 50));
}

TEST_F(BlobReaderOfTwoParts, CountsTheInitialBytesTwiceWhenCrossing) {  // Quirk crossing-counts-twice
  ASSERT_EQ(reader->skipBytes(190), 190);
  EXPECT_EQ(read(15), 15);  // 10 and 5; the position is now 190 + 10 + 15
  EXPECT_EQ(read(2), 1);
  EXPECT_EQ(buffer[0], 50 + 15);
}

TEST_F(BlobReaderOfTwoParts, AnswersOneLessWithinTheFullPart) {  // Quirk full-part-one-less
  ASSERT_EQ(reader->skipBytes(200), 200);
  EXPECT_EQ(read(10), 9);
  EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 10), ramp(10, 50));
  EXPECT_EQ(read(10), 9);
  EXPECT_EQ(buffer[0], 50 + 9);  // the position moved by 9
  EXPECT_EQ(read(0), -1);
  EXPECT_EQ(read(-5), -1);
}

TEST_F(BlobReaderOfTwoParts, ReadsExactlyToTheEndOfTheInitialPart) {
  EXPECT_EQ(read(200), 200);
  EXPECT_EQ(read(1), 0);
  EXPECT_EQ(buffer[0], 50);
}

TEST_F(BlobReaderOfTwoParts, StepsBackOneAtTheEnd) {  // Quirk full-part-one-less
  ASSERT_EQ(reader->skipBytes(1200), 1200);
  EXPECT_EQ(read(10), -1);
  EXPECT_EQ(read(10), 0);  // the last byte, less one
  EXPECT_EQ(buffer[0], (50 + 999) % 256);
}

TEST_F(BlobReaderOfTwoParts, StaysInsideAfterCountingPastItsEnd) {
  ASSERT_EQ(read(4096), 1200);
  EXPECT_EQ(read(4096), -1);  // position 1400, 200 past the end
  EXPECT_EQ(reader->skipBytes(1), -1);
  EXPECT_EQ(reader->skipBytes(0), -1);
}

TEST_F(BlobReaderOfTwoParts, StopsWhereTheInitialPartWasCutMeanwhile) {
  const std::string path = folder.path("initial.erblb");
  ASSERT_EQ(truncate(path.c_str(), 128 + 2 + 7 + 4 + 100), 0);
  EXPECT_EQ(read(2000), 100);
  EXPECT_EQ(read(2000), 0);
}

TEST_F(BlobReaderOfTwoParts, GivesLessWhereTheFullPartWasCutMeanwhile) {
  const std::string path = folder.path("full.erblb");
  ASSERT_EQ(truncate(path.c_str(), 128 + 2 + 7 + 4 + 100), 0);
  EXPECT_EQ(read(2000), 300);
}

TEST_F(BlobReaderTest, HasNoLengthWhenTheSumPassesAnInt) {
  constexpr int kHalf = 0x40000000;
  full(BlobBuilder().chunkHead("dummy", 0));
  for (const char* part : {"full.erblb/a.f.ei4", "initial.erblb/a.t.ei4"}) {
    const std::string container(part, std::string_view(part).find('/'));
    const std::string entry = part + container.size() + 1;
    const std::string path = folder.write(container, BlobBuilder().entry(entry, kHalf, 0).build());
    ASSERT_EQ(truncate(path.c_str(), kHalf + 200), 0);
  }
  auto reader = over("a.ei4");  // the zeros behind the entries are chunks without name and size
  EXPECT_EQ(reader.getLength(), -1);
  EXPECT_EQ(reader.skipBytes(1), -1);
}

}  // namespace
