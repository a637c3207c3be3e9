#include "ei4info/read_sizes.h"

#include <algorithm>

#include "driver/picture_limit.h"
#include "gwav4/header.h"

namespace ei4::info {

namespace {

constexpr int kWidestWish = 65535;  // pixels; no side is longer
constexpr int kThumbnail = 128;     // pixels; up to this width the converter reads twice the estimate
constexpr int kLeastBudget = 32;    // bytes of the stream

struct Choice {
  int factor = 0;
  int budget = -1;
  int width = 0;
  int height = 0;
};

Choice choose(std::span<const unsigned char> header, int wanted) {
  Choice choice;
  zel::gwav4::getBestFactor(wanted, &choice.budget, &choice.factor, header.data(), header.size(),
                            &choice.width, &choice.height, nullptr, nullptr, nullptr);
  return choice;
}

// Quirk thumbnail-reads-double
std::int64_t bytesOfStream(std::int64_t length, int budget, bool isThumbnail) {
  std::int64_t wanted = budget < 0 ? length : std::max(budget, kLeastBudget);
  if (isThumbnail) wanted *= 2;
  return std::min(length, wanted);
}

// The smallest wish that is answered with at most `factor` halvings, as `wish` is: a larger one never gets more of them.
int smallestWish(std::span<const unsigned char> header, int factor, int wish) {
  int low = 1;
  int high = wish;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (choose(header, middle).factor <= factor) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

}  // namespace

std::vector<ReadSize> readSizes(std::span<const unsigned char> header, std::int64_t length,
                                int preambleLength) {
  std::vector<ReadSize> sizes;
  std::optional<int> wantedTo;
  for (int wish = kWidestWish; wish >= 1;) {
    const Choice choice = choose(header, wish);
    const int from = smallestWish(header, choice.factor, wish);
    const auto add = [&](int first, std::optional<int> last) {
      const std::int64_t stream = bytesOfStream(length, choice.budget, first <= kThumbnail);
      sizes.push_back(
          {.factor = choice.factor,
           .width = choice.width,
           .height = choice.height,
           .wantedFrom = first,
           .wantedTo = last,
           .readBudget = choice.budget < 0 ? std::nullopt : std::optional<std::int64_t>(choice.budget),
           .bytesRead = std::min(length, preambleLength + stream),
           .mayClaim = ei4::inputMayClaim(CSize(choice.width, choice.height), length)});
    };
    const bool readsMoreAsThumbnail =
        bytesOfStream(length, choice.budget, true) != bytesOfStream(length, choice.budget, false);
    if (from <= kThumbnail && wish > kThumbnail && readsMoreAsThumbnail) {
      add(kThumbnail + 1, wantedTo);
      add(from, kThumbnail);
    } else {
      add(from, wantedTo);
    }
    wish = from - 1;
    wantedTo = wish;
  }
  return sizes;
}

}  // namespace ei4::info
