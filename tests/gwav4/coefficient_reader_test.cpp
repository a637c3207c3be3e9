#include "gwav4/coefficient_reader.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <numeric>
#include <vector>

#include "coded_orders.h"

namespace ei4::test {
namespace {

using zel::gwav4::BlockScratch;
using zel::gwav4::CoefficientReader;
using zel::gwav4::kernels;
using zel::gwav4::kRowSlack;
using zel::gwav4::OrderCursors;

using Reader = CoefficientReader<std::int32_t>;
using Row = std::vector<std::int32_t>;

/// The coefficients 1, 2, 3, ... of one order, and a reader over them.
class Counted {
 public:
  Counted(const Reader::Bands& bands, int total, int rowEnd = 65536)
      : m_Bands(bands),
        m_Coded(topOf(counted(total)), {counted(total)}),
        m_Scratch(std::make_unique<BlockScratch>()),
        m_Reader(kernels().wide, m_Coded.cursors[0], bands, {rowEnd, &stopped}, *m_Scratch) {}

  /// The rows of the next band; one that is not there is empty.
  std::pair<Row, Row> next() {
    const Reader::Band band = m_Reader.next();
    for (std::size_t i = 0; i < kRowSlack; ++i)
      m_Sum += band.first[static_cast<std::size_t>(m_Bands.firstLength) + i];
    return {rowAt(band.first, m_Bands.firstLength), rowAt(band.second, m_Bands.secondLength)};
  }

  static Row counted(int total, int first = 1) {
    Row row(static_cast<std::size_t>(total));
    std::iota(row.begin(), row.end(), first);
    return row;
  }

  std::atomic<bool> stopped = false;

 private:
  static Row rowAt(const std::int32_t* from, int length) {
    return from == nullptr ? Row{} : Row(from, from + length);
  }

  Reader::Bands m_Bands;
  CodedOrders m_Coded;
  std::unique_ptr<BlockScratch> m_Scratch;
  Reader m_Reader;
  std::uint32_t m_Sum = 0;  ///< of what is behind the rows: it can be read
};

using Pair = std::pair<Row, Row>;

TEST(CoefficientReader, HandsOutTheTwoRowsOfEachBand) {
  // Order 0 of 5 x 4 samples: 2 coefficients in an even row, 5 in an odd one.
  Counted order({2, 2, 5, 1, 4}, 14);
  EXPECT_EQ(order.next(), (Pair{{1, 2}, {3, 4, 5, 6, 7}}));
  EXPECT_EQ(order.next(), (Pair{{8, 9}, {10, 11, 12, 13, 14}}));
}

TEST(CoefficientReader, KnowsThatTheLastBandMayLackItsSecondRow) {
  Counted order({2, 2, 5, 1, 3}, 9);
  EXPECT_EQ(order.next(), (Pair{{1, 2}, {3, 4, 5, 6, 7}}));
  EXPECT_EQ(order.next(), (Pair{{8, 9}, {}}));
  // With rows four apart a fifth and last one is the band's first: rows 0 and 4 of 8, row 8 of 9 to 12.
  for (const int height : {9, 12}) {
    Counted coarse({2, 1, 2, 4, height}, 4);
    EXPECT_EQ(coarse.next(), (Pair{{1}, {2, 3}}));
    EXPECT_EQ(coarse.next(), (Pair{{4}, {}}));
  }
  Counted whole({2, 1, 2, 4, 13}, 6);
  whole.next();
  EXPECT_EQ(whole.next(), (Pair{{4}, {5, 6}}));
}

TEST(CoefficientReader, HandsOutSingleRowsOfTheCoarsestOrder) {
  Counted order({3, 4, 0, 8, 24}, 12);
  EXPECT_EQ(order.next(), (Pair{{1, 2, 3, 4}, {}}));
  EXPECT_EQ(order.next(), (Pair{{5, 6, 7, 8}, {}}));
  EXPECT_EQ(order.next(), (Pair{{9, 10, 11, 12}, {}}));
}

TEST(CoefficientReader, HandsOutRowsWithoutCoefficients) {
  Counted narrow({3, 0, 1, 1, 6}, 3);  // a plane of one column
  for (int band = 1; band <= 3; ++band) EXPECT_EQ(narrow.next(), (Pair{{}, {band}}));
  Counted none({2, 0, 0, 1, 2}, 0);
  EXPECT_EQ(none.next(), (Pair{{}, {}}));
  EXPECT_EQ(none.next(), (Pair{{}, {}}));
}

// Many bands are read at once, or a band in several blocks.
TEST(CoefficientReader, GoesOnOverAnyNumberOfBlocks) {
  for (const int length : {1, 2, 63, 64, 65, 1000, 2047, 2048, 2049, 5000, 9000}) {
    const int bands = 40'000 / length / 2 + 2;
    const int total = bands * 2 * length;
    Counted order({bands, length, length, 1, 2 * bands}, total);
    for (int band = 0; band < bands; ++band) {
      const int first = 1 + band * 2 * length;
      ASSERT_EQ(order.next(),
                (Pair{Counted::counted(length, first), Counted::counted(length, first + length)}))
          << length << ", band " << band;
    }
  }
}

TEST(CoefficientReader, HandsOutZerosFromTheEndOfTheScanOn) {
  for (int rowEnd = 0; rowEnd <= 7; ++rowEnd) {
    for (const int length : {2, 3000}) {
      Counted order({3, length, length, 1, 6}, 6 * length, rowEnd);
      for (int band = 0; band < 3; ++band) {
        const auto wanted = [&](int row) {
          return row < rowEnd ? Counted::counted(length, 1 + row * length)
                              : Row(static_cast<std::size_t>(length));
        };
        ASSERT_EQ(order.next(), (Pair{wanted(2 * band), wanted(2 * band + 1)})) << rowEnd << ", " << length;
      }
    }
  }
}

TEST(CoefficientReader, CountsTheEndOfTheScanInRowsOfThePlane) {
  const Row zeros(1);
  Counted order({2, 1, 1, 4, 16}, 4, 8);  // the rows 0, 4, 8 and 12
  EXPECT_EQ(order.next(), (Pair{{1}, {2}}));
  EXPECT_EQ(order.next(), (Pair{zeros, zeros}));
  Counted odd({2, 1, 1, 4, 16}, 4, 9);
  odd.next();
  EXPECT_EQ(odd.next(), (Pair{{3}, zeros}));
  Counted single({3, 1, 0, 4, 12}, 3, 5);
  EXPECT_EQ(single.next(), (Pair{{1}, {}}));
  EXPECT_EQ(single.next(), (Pair{{2}, {}}));
  EXPECT_EQ(single.next(), (Pair{zeros, {}}));
}

TEST(CoefficientReader, HandsOutZerosForWhatIsNotReadWhenItIsStopped) {
  constexpr int kLength = 3000;  // so that a band is not read before it is asked for
  Counted order({2, kLength, kLength, 1, 4}, 4 * kLength);
  EXPECT_EQ(order.next().first, Counted::counted(kLength));
  order.stopped = true;
  const Row zeros(kLength);
  EXPECT_EQ(order.next(), (Pair{zeros, zeros}));
}

TEST(CoefficientReader, HandsOutZerosWhereNothingIsCoded) {
  OrderCursors nothing;
  for (const int top : {-1, 5}) {
    nothing.top = top;
    nothing.lowestSignificance = top + 1;
    nothing.lowestRefinement = top;
    const std::atomic<bool> stopped = false;
    const auto scratch = std::make_unique<BlockScratch>();
    CoefficientReader<std::int16_t> reader(kernels().narrow, nothing, {2, 3, 2, 1, 4}, {4, &stopped},
                                           *scratch);
    for (int band = 0; band < 2; ++band) {
      const auto rows = reader.next();
      for (int i = 0; i < 3; ++i) EXPECT_EQ(rows.first[i], 0);
      for (int i = 0; i < 2; ++i) EXPECT_EQ(rows.second[i], 0);
    }
  }
}

}  // namespace
}  // namespace ei4::test
