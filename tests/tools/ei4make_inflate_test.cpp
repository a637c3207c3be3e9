#include "ei4make/inflate.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "ei4make/picture.h"

namespace {

using ei4::tools::inflated;
using ei4::tools::PictureError;
using Bytes = std::vector<unsigned char>;

Bytes deflated(Bytes bytes) {
  z_stream z{};
  EXPECT_EQ(deflateInit2(&z, 9, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY), Z_OK);
  Bytes result(deflateBound(&z, bytes.size()));
  z.next_in = bytes.data();
  z.avail_in = static_cast<uInt>(bytes.size());
  z.next_out = result.data();
  z.avail_out = static_cast<uInt>(result.size());
  EXPECT_EQ(deflate(&z, Z_FINISH), Z_STREAM_END);
  result.resize(z.total_out);
  deflateEnd(&z);
  return result;
}

TEST(Inflated, GivesAllBytesUpToTheLimit) {
  Bytes bytes(300000, 7);
  bytes.back() = 8;
  const Bytes stream = deflated(bytes);
  EXPECT_EQ(inflated(stream, 300000), bytes);
  EXPECT_THROW(inflated(stream, 299999), PictureError);
  EXPECT_EQ(inflated(deflated({}), 0), Bytes());
}

TEST(Inflated, RefusesWhatIsCutOrWrong) {
  const Bytes stream = deflated({1, 2, 3, 4, 1, 2, 3, 4, 1, 2, 3, 4});
  for (std::size_t length = 0; length < stream.size(); ++length) {
    EXPECT_THROW(inflated(std::span(stream).first(length), 100), PictureError) << length;
  }
  EXPECT_THROW(inflated(Bytes{0xFF, 0xFF, 0xFF}, 100), PictureError);
}

TEST(Inflated, LeavesWhatFollowsAlone) {
  Bytes stream = deflated({5, 6});
  stream.push_back(0);
  EXPECT_EQ(inflated(stream, 100), (Bytes{5, 6}));
}

}  // namespace
