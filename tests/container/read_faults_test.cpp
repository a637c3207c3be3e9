// Reads and seeks that fail, and files that change, at every point of parsing and reading.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "container/FileBlob.h"
#include "container/blob_reader.h"
#include "container/call_faults.h"
#include "container/file_reader.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::BlobBuilder;
using ei4::test::ramp;
using ei4::test::ReadFaults;
using ei4::test::TempFolder;
using Bytes = std::vector<unsigned char>;
using Which = ReadFaults::Which;

// Entries that read well, with and without chunks, and one whose chunk lies far behind the one before it.
BlobBuilder container() {
  return BlobBuilder()
      .entry("a", 300, 0)
      .entry("p#b", 20, 300)
      .bytes(ramp(320))
      .chunk("c", ramp(6000, 3))
      .chunk("ERDELETEa")
      .chunk("d", ramp(10, 9));
}

class EachRead : public testing::TestWithParam<Which> {
 protected:
  // Does `what` again and again, with a fault at each of its reads and seeks in turn. It ends the faults itself
  // in front of reads that are its own.
  template <typename What>
  void forEachFault(const What& what) {
    int faults = 0;
    for (int first = 0;; ++first) {
      ReadFaults reads(first, GetParam());
      what(reads);
      if (reads.calls() <= first) break;  // it came to its end without that one
      ++faults;
    }
    EXPECT_GT(faults, 2);
  }

  TempFolder folder;
};

TEST_P(EachRead, OfAContainerFailsTheParseOrEndsTheScanOfChunks) {
  const std::string path = folder.write("x", container().build());
  FileBlob whole(path);
  ASSERT_TRUE(whole.parseBlob());
  int refusals = 0;
  int partial = 0;
  forEachFault([&](ReadFaults& reads) {
    FileBlob blob(path);
    testing::internal::CaptureStderr();
    const bool parsed = blob.parseBlob();
    reads.end();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    if (!parsed) {
      ++refusals;
      unsigned char byte = 0;
      const BlobEntry entry("b", 1, 0, 1);
      EXPECT_EQ(blob.readEntryIntoBuffer(&entry, 0, &byte, 0, 1), -1);
      return;
    }
    EXPECT_EQ(blob.dataBase(), whole.dataBase());
    EXPECT_EQ(blob.dataEnd(), whole.dataEnd());
    if (blob.entries().size() != whole.entries().size()) ++partial;
    for (const auto& [name, entry] : blob.entries()) {
      if (name == "a") continue;  // a scan that ended in front of its deletion
      const auto same = whole.entries().find(name);
      ASSERT_NE(same, whole.entries().end()) << name;
      EXPECT_EQ(entry->offset, same->second->offset);
      EXPECT_EQ(entry->size, same->second->size);
    }
  });
  EXPECT_GT(refusals, 5);  // measuring, the header, the table
  EXPECT_GT(partial, 2);   // chunks
}

TEST_P(EachRead, OfAnEntryGivesWhatWasReadOrNothing) {
  FileBlob blob(folder.write("x", container().build()));
  ASSERT_TRUE(blob.parseBlob());
  const BlobEntry* entry = blob.findBlobEntry("c");
  Bytes buffer(6000);
  EXPECT_EQ(blob.readEntryIntoBuffer(entry, 0, buffer.data(), 0, 6000), 6000);
  {
    const ReadFaults seek(0, GetParam());
    EXPECT_EQ(blob.readEntryIntoBuffer(entry, 0, buffer.data(), 0, 6000), -1);
  }
  {
    const ReadFaults read(1, GetParam());
    EXPECT_EQ(blob.readEntryIntoBuffer(entry, 0, buffer.data(), 0, 6000), 0);
  }
  EXPECT_EQ(blob.readEntryIntoBuffer(entry, 0, buffer.data(), 0, 6000), 6000);  // nothing stays broken
  EXPECT_EQ(buffer, ramp(6000, 3));
}

// Reads as a conversion does: 24 bytes, 16 bytes, the rest.
void readWhole(SerialReader& reader, const Bytes& whole) {
  const int length = reader.getLength();
  ASSERT_TRUE(length <= 0 || length == static_cast<int>(whole.size())) << length;
  if (length <= 0) {
    unsigned char byte = 0;
    EXPECT_EQ(reader.readBytes(&byte, 0, 1), -1);
    return;
  }
  Bytes got;
  for (const int count : {24, 16, length - 40}) {
    Bytes part(static_cast<std::size_t>(count));
    const int read = reader.readBytes(part.data(), 0, count);
    ASSERT_LE(read, count);
    if (read < count) {  // and no byte of another place
      EXPECT_TRUE(std::equal(part.begin(), part.begin() + std::max(read, 0),
                             whole.begin() + static_cast<std::ptrdiff_t>(got.size())));
      return;
    }
    got.insert(got.end(), part.begin(), part.end());
  }
  EXPECT_EQ(got, whole);
}

TEST_P(EachRead, OfAPlainFileClosesTheReaderOrEndsTheBytes) {
  const Bytes whole = ramp(9000, 5);
  const std::string path = folder.write("a.ei4", whole);
  forEachFault([&](ReadFaults&) {
    FileReader reader(path.c_str());
    readWhole(reader, whole);
  });
}

TEST_P(EachRead, MayBeASkipOfAPlainFile) {
  FileReader reader(folder.write("a.ei4", ramp(50)).c_str());
  const ReadFaults seek(0, GetParam());
  EXPECT_EQ(reader.skipBytes(8), -1);
}

TEST_P(EachRead, OfOnePartEndsTheBytes) {
  const Bytes whole = ramp(9000, 5);
  folder.write("full.erblb", BlobBuilder().chunk("z", ramp(5000)).chunk("a.ei4", whole).build());
  forEachFault([&](ReadFaults&) {
    BlobReader reader(folder.path("a.ei4").c_str());
    readWhole(reader, whole);
  });
}

TEST_P(EachRead, OfTwoPartsEndsTheBytes) {
  Bytes whole = ramp(100, 5);
  const Bytes full = ramp(9000, 50);
  folder.write("initial.erblb", BlobBuilder().chunk("a.t.ei4", whole).build());
  folder.write("full.erblb", BlobBuilder().chunk("a.f.ei4", full).build());
  whole.insert(whole.end(), full.begin(), full.end());
  forEachFault([&](ReadFaults&) {
    BlobReader reader(folder.path("a.ei4").c_str());
    // Without its initial part an image is its full part alone.
    if (reader.getLength() == static_cast<int>(full.size())) return readWhole(reader, full);
    readWhole(reader, whole);
  });
}

INSTANTIATE_TEST_SUITE_P(Faults, EachRead, testing::Values(Which::onlyOne, Which::allFromThere),
                         [](const auto& which) {
                           return which.param == Which::onlyOne ? "OneAlone" : "AllFromThere";
                         });

TEST(AFileThatShrinksWhileItIsParsed, IsRefusedOrKeepsWhatWasThere) {
  const TempFolder folder;
  BlobBuilder builder;
  for (int i = 0; i < 400; ++i) builder.entry("t" + std::to_string(i), 0, 0);
  for (int i = 0; i < 400; ++i) builder.chunk("c" + std::to_string(i), ramp(i));
  const Bytes whole = builder.build();
  for (int read = 0; read < 4000; read += 41) {
    const std::string path = folder.write("x", whole);
    const ReadFaults cut(read, [&] { EXPECT_EQ(truncate(path.c_str(), 5000), 0); });
    FileBlob blob(path);
    if (!blob.parseBlob()) continue;
    Bytes buffer(400);
    for (const auto& [name, entry] : blob.entries()) {
      const int got = blob.readEntryIntoBuffer(entry.get(), 0, buffer.data(), 0, 400);
      EXPECT_LE(got, entry->size) << name;
      EXPECT_GE(got, 0) << name;
    }
  }
}

TEST(AFileThatGrowsWhileItIsParsed, IsReadAsItWasMeasured) {
  const TempFolder folder;
  const Bytes whole = BlobBuilder().chunk("a", ramp(50)).chunk("b", ramp(5000, 7)).build();
  const Bytes more = BlobBuilder().chunk("a", ramp(50)).chunk("b", ramp(5000, 7)).chunk("c", ramp(9)).build();
  for (int read = 3; read < 30; ++read) {  // behind the measuring
    const std::string path = folder.write("x", whole);
    const ReadFaults growth(read, [&] { folder.write("x", more); });
    FileBlob blob(path);
    testing::internal::CaptureStderr();
    ASSERT_TRUE(blob.parseBlob()) << read;
    const std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(messages.empty() || messages == "chunk size out of bounds\n") << messages;
    EXPECT_EQ(blob.findBlobEntry("c"), nullptr);
    Bytes buffer(5000);
    EXPECT_EQ(blob.readEntryIntoBuffer(blob.findBlobEntry("b"), 0, buffer.data(), 0, 5000), 5000);
    EXPECT_EQ(buffer, ramp(5000, 7));
  }
}

}  // namespace
