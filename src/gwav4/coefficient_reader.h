#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "gwav4/kernels.h"

namespace zel::gwav4 {

/// How far the coefficients of a plane are read.
struct ScanLimit {
  int rowEnd;                        ///< rows of the plane from here on hold zeros
  const std::atomic<bool>* stopped;  ///< once true, what is not read yet is zeros too
};

/// The coefficients of one plane and order, front to back.
///
/// In the plane's grid the rows that have some are the multiples of `spacing`. They come in bands: an even multiple,
/// then the odd one behind it. A band of the coarsest order is a single row.
template <class Lane>
class CoefficientReader {
 public:
  struct Bands {
    int count;
    int firstLength;   ///< coefficients of a band's first row
    int secondLength;  ///< of its second row, which the last band may lack; 0: bands have one row
    int spacing;
    int planeHeight;
  };

  /// All references, and what `limit` names, stay the caller's.
  CoefficientReader(const LaneKernel<Lane>& kernel, OrderCursors& cursors, const Bands& bands,
                    const ScanLimit& limit, BlockScratch& scratch);

  struct Band {
    const Lane* first;
    const Lane* second;  ///< null where there is none
  };
  /// The next band; there must be one. Its rows stay until the next call, with kRowSlack readable behind them.
  Band next();

 private:
  std::size_t lengthOf(int band) const;
  bool hasSecond(int band) const;
  void readBands();

  const LaneKernel<Lane>& lanes;
  OrderCursors& order;
  Bands shape;
  ScanLimit scan;
  BlockScratch& block;
  int nextBand = 0;
  int bandEnd = 0;         ///< behind the bands in `coefficients`
  std::size_t offset = 0;  ///< of nextBand in there
  std::vector<Lane> coefficients;
  std::vector<unsigned char> ahead;  ///< for what is read ahead of the significance streams
};

extern template class CoefficientReader<std::int16_t>;
extern template class CoefficientReader<std::int32_t>;

}  // namespace zel::gwav4
