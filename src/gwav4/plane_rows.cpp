#include "gwav4/plane_rows.h"

#include <algorithm>
#include <array>

namespace zel::gwav4 {
namespace {

int halvedUp(int size) { return size / 2 + size % 2; }

std::size_t padded(int count) {
  constexpr std::size_t kAlignment = 32;
  return (static_cast<std::size_t>(count) + kRowSlack + kAlignment - 1) / kAlignment * kAlignment;
}

}  // namespace

int levelsToInvert(int levels, int width, int height) {
  int doublings = 0;
  while ((1L << doublings) < std::max(width, height)) ++doublings;
  return std::min(levels, doublings);
}

/// One level: makes the rows of its grid from its own coefficients and the rows of the level above it.
template <class Lane>
class PlaneRows<Lane>::Level {
 public:
  Level(const LaneKernel<Lane>& kernel, OrderCursors& cursors, int levelWidth, int levelHeight, int spacing,
        const PlaneShape& shape, const ScanLimit& limit, BlockScratch& scratch)
      : width(levelWidth),
        height(levelHeight),
        evens(halvedUp(levelWidth)),
        odds(levelWidth / 2),
        inverted(shape.inverted),
        lifting(kernel.lifting),
        high(kernel, cursors, {halvedUp(levelHeight), odds, levelWidth, spacing, shape.height}, limit,
             scratch),
        highOffset(padded(evens)),
        memory(4 * (padded(evens) + padded(odds)) + (spacing > 1 ? 2 * padded(levelWidth) : 0)) {
    Lane* at = memory.data();
    for (Lane** row : {&even[0], &even[1], &odd[0], &odd[1]}) {
      *row = at;
      at += highOffset + padded(odds);
    }
    if (spacing > 1) {
      made[0] = at;
      made[1] = at + padded(levelWidth);
    }
  }

  /// Low-pass rows come from `above`, or, for the coarsest level, from `reader`.
  void takeFrom(Level* above, CoefficientReader<Lane>* reader) {
    coarser = above;
    coarsest = reader;
  }

  /// As PlaneRows::next.
  int next(Lane* first, Lane* second) {
    const int pairs = halvedUp(height);
    if (pairsMade == pairs) return 0;
    const int pair = pairsMade++;
    if (pair == 0) lowerEven(0);
    const bool hasNext = pair + 1 < pairs;
    if (hasNext) lowerEven(pair + 1);

    Lane* const upper = even[pair % 2];
    Lane* const lower = odd[pair % 2];
    const bool hasOdd = 2 * pair + 1 < height;
    if (hasOdd && inverted) {
      for (const auto& [offset, count] : halves()) {
        keep(hasNext ? lifting.raiseOdd(lower + offset, upper + offset, even[(pair + 1) % 2] + offset, count)
                     : lifting.raiseOddAtEnd(lower + offset, upper + offset, count));
      }
    }
    finish(upper, first);
    if (!hasOdd) return 1;
    finish(lower, second);
    return 2;
  }

  bool withinLimits() const { return exact; }

 private:
  struct Half {
    std::size_t offset;
    std::size_t count;
  };
  std::array<Half, 2> halves() const {
    return {Half{0, static_cast<std::size_t>(evens)}, Half{highOffset, static_cast<std::size_t>(odds)}};
  }

  void keep(bool within) { exact &= within; }

  const Lane* nextLowRow() {
    if (coarser == nullptr) return coarsest->next().first;
    if (rowsTaken % 2 == 0) coarser->next(coarser->made[0], coarser->made[1]);
    return coarser->made[rowsTaken++ % 2];
  }

  /// Takes in a pair of rows, and finishes its even one as far as the vertical direction goes.
  void lowerEven(int pair) {
    Lane* const to = even[pair % 2];
    Lane* const below = odd[pair % 2];
    const Lane* const above = odd[(pair + 1) % 2];
    const Lane* const low = nextLowRow();
    const auto band = high.next();
    const std::array<const Lane*, 2> from = {low, band.first};
    if (band.second != nullptr) {
      lifting.split(band.second, static_cast<std::size_t>(width), below, below + highOffset);
    }
    const Lane* const onlyNeighbour = band.second == nullptr ? above : below;
    for (std::size_t half = 0; half < 2; ++half) {
      const auto [offset, count] = halves()[half];
      if (height == 1 || !inverted) {
        std::copy_n(from[half], count, to + offset);
      } else if (pair == 0 || band.second == nullptr) {
        keep(lifting.lowerEvenAtEnd(to + offset, from[half], onlyNeighbour + offset, count));
      } else {
        keep(lifting.lowerEven(to + offset, from[half], above + offset, below + offset, count));
      }
    }
  }

  void finish(Lane* row, Lane* out) {
    if (inverted) {
      keep(lifting.invertRow(row, row + highOffset, static_cast<std::size_t>(width), out));
      return;
    }
    for (int i = 0; i < width; ++i)
      out[i] = row[(i % 2 == 0 ? 0 : highOffset) + static_cast<std::size_t>(i / 2)];
  }

  int width;
  int height;
  int evens;  ///< columns
  int odds;
  bool inverted;
  bool exact = true;
  const LiftingKernel<Lane>& lifting;
  CoefficientReader<Lane> high;
  Level* coarser = nullptr;
  CoefficientReader<Lane>* coarsest = nullptr;
  int rowsTaken = 0;  ///< from `coarser`
  int pairsMade = 0;
  std::size_t highOffset;  ///< of a row's high-pass half
  std::vector<Lane> memory;
  std::array<Lane*, 2> even{};  ///< rows of this pair and the next one, in halves
  std::array<Lane*, 2> odd{};
  std::array<Lane*, 2> made{};  ///< finished rows for the finer level
};

template <class Lane>
PlaneRows<Lane>::PlaneRows(const LaneKernel<Lane>& kernel, std::vector<OrderCursors>& orders,
                           const PlaneShape& shape, const ScanLimit& limit, BlockScratch& scratch)
    : width(shape.width), height(shape.height) {
  int levelWidth = shape.width;
  int levelHeight = shape.height;
  for (int level = 0; level < shape.levels; ++level) {
    levels.push_back(std::make_unique<Level>(kernel, orders[static_cast<std::size_t>(level)], levelWidth,
                                             levelHeight, 1 << level, shape, limit, scratch));
    levelWidth = halvedUp(levelWidth);
    levelHeight = halvedUp(levelHeight);
  }
  coarsest = std::make_unique<CoefficientReader<Lane>>(
      kernel, orders.back(),
      typename CoefficientReader<Lane>::Bands{levelHeight, levelWidth, 0, 1 << shape.levels, shape.height},
      limit, scratch);
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const bool last = i + 1 == levels.size();
    levels[i]->takeFrom(last ? nullptr : levels[i + 1].get(), coarsest.get());
  }
}

template <class Lane>
PlaneRows<Lane>::~PlaneRows() = default;

template <class Lane>
int PlaneRows<Lane>::next(Lane* first, Lane* second) {
  if (!levels.empty()) {
    const int made = levels.front()->next(first, second);
    for (const auto& level : levels) exact &= level->withinLimits();
    return made;
  }
  if (rowsMade == height) return 0;
  ++rowsMade;
  std::copy_n(coarsest->next().first, width, first);
  return 1;
}

template class PlaneRows<std::int16_t>;
template class PlaneRows<std::int32_t>;

}  // namespace zel::gwav4
