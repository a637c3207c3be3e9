#include "gwav4/coefficient_reader.h"

#include <algorithm>

namespace zel::gwav4 {
namespace {

/// Coefficients that are read at once, at least: blocks of less cost more each.
constexpr std::size_t kWorthwhile = 5000;

}  // namespace

template <class Lane>
CoefficientReader<Lane>::CoefficientReader(const LaneKernel<Lane>& kernel, OrderCursors& cursors,
                                           const Bands& bands, const ScanLimit& limit, BlockScratch& scratch)
    : lanes(kernel), order(cursors), shape(bands), scan(limit), block(scratch) {
  const auto perBand =
      static_cast<std::size_t>(shape.firstLength) + static_cast<std::size_t>(shape.secondLength);
  const std::size_t atOnce = std::min(static_cast<std::size_t>(shape.count),
                                      perBand == 0 ? 1 : (kWorthwhile + perBand - 1) / perBand);
  constexpr std::size_t kBlockSlack = 64;  // the kernels write whole words of coefficients
  coefficients.resize(atOnce * perBand + kBlockSlack + kRowSlack);

  const std::size_t perStream = bytesAhead(std::min(atOnce * perBand, kMostInBlock));
  const auto streams = static_cast<std::size_t>(std::max(order.top + 1 - order.lowestSignificance, 0));
  ahead.resize(2 * perStream * streams);
  for (std::size_t i = 0; i < streams; ++i) {
    RunCursor& runs = order.runs[static_cast<std::size_t>(order.lowestSignificance) + i];
    runs.ahead = ahead.data() + 2 * perStream * i;
    runs.signsAt = perStream;
  }
}

template <class Lane>
bool CoefficientReader<Lane>::hasSecond(int band) const {
  return shape.secondLength > 0 && (2 * std::int64_t{band} + 1) * shape.spacing < shape.planeHeight;
}

template <class Lane>
std::size_t CoefficientReader<Lane>::lengthOf(int band) const {
  const auto first = static_cast<std::size_t>(shape.firstLength);
  return hasSecond(band) ? first + static_cast<std::size_t>(shape.secondLength) : first;
}

template <class Lane>
auto CoefficientReader<Lane>::next() -> Band {
  if (nextBand == bandEnd) readBands();
  const Lane* const first = coefficients.data() + offset;
  const Lane* const second = hasSecond(nextBand) ? first + shape.firstLength : nullptr;
  offset += lengthOf(nextBand);
  ++nextBand;
  return {first, second};
}

template <class Lane>
void CoefficientReader<Lane>::readBands() {
  offset = 0;
  std::size_t total = 0;
  const int firstBand = bandEnd;
  do {
    total += lengthOf(bandEnd++);
  } while (bandEnd < shape.count && total < kWorthwhile);
  if (order.lowestSignificance > order.top) return;  // nothing is coded: all of them stay 0

  const auto rowsPerBand = shape.secondLength > 0 ? 2 : 1;
  const std::int64_t firstRow = std::int64_t{firstBand} * rowsPerBand * shape.spacing;
  if (firstRow >= scan.rowEnd || *scan.stopped) {
    order.top = -1;
    order.lowestSignificance = 0;
    std::fill(coefficients.begin(), coefficients.end(), Lane{0});
    return;
  }
  for (std::size_t done = 0; done < total; done += kMostInBlock) {
    lanes.read(order, std::min(total - done, kMostInBlock), block, coefficients.data() + done);
  }
  // Rows from the end of the scan on are zeros.
  std::size_t kept = 0;
  for (int band = firstBand; band < bandEnd; ++band) {
    const std::int64_t row = std::int64_t{band} * rowsPerBand * shape.spacing;
    if (row < scan.rowEnd) kept += static_cast<std::size_t>(shape.firstLength);
    if (hasSecond(band) && row + shape.spacing < scan.rowEnd)
      kept += static_cast<std::size_t>(shape.secondLength);
  }
  std::fill(coefficients.begin() + static_cast<std::ptrdiff_t>(kept),
            coefficients.begin() + static_cast<std::ptrdiff_t>(total), Lane{0});
}

template class CoefficientReader<std::int16_t>;
template class CoefficientReader<std::int32_t>;

}  // namespace zel::gwav4
