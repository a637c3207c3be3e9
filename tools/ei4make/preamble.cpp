#include "ei4make/preamble.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>

namespace ei4::tools {

namespace {

/// Grey samples in any width.
class Samples {
 public:
  explicit Samples(Picture& picture) : picture_(picture) {}

  std::size_t count() const { return picture_.pixels.size() / width(); }
  int at(std::size_t i) const {
    if (width() == 1) return picture_.pixels[i];
    std::uint16_t sample = 0;
    std::memcpy(&sample, &picture_.pixels[2 * i], 2);
    return sample;
  }
  void set(std::size_t i, int value) {
    const auto sample = static_cast<std::uint16_t>(value);
    if (width() == 1) {
      picture_.pixels[i] = static_cast<unsigned char>(value);
    } else {
      std::memcpy(&picture_.pixels[2 * i], &sample, 2);
    }
  }

 private:
  std::size_t width() const { return picture_.bytesPerPixel == 2 ? 2 : 1; }
  Picture& picture_;
};

struct Numbers {
  double slope;
  double intercept;
  double window;
  double level;
};

// The narrowest window of whole numbers over the values that occur.
void showWhatOccurs(const Samples& samples, Numbers& numbers) {
  int least = samples.at(0);
  int most = least;
  for (std::size_t i = 1; i < samples.count(); ++i) {
    least = std::min(least, samples.at(i));
    most = std::max(most, samples.at(i));
  }
  const double a = least * numbers.slope + numbers.intercept;
  const double b = most * numbers.slope + numbers.intercept;
  const double low = std::floor(std::min(a, b));
  numbers.window = std::max(1.0, std::ceil(std::max(a, b)) - low);
  numbers.level = low + std::floor(numbers.window / 2);  // as the converter halves
}

float narrowed(double value) {
  constexpr float kMost = std::numeric_limits<float>::max();
  if (std::fabs(value) <= static_cast<double>(kMost)) return static_cast<float>(value);
  return std::numeric_limits<float>::infinity();
}

// What is left of a number in a preamble: 32-bit floating point, of which the converter reads the whole part.
double asRead(double value) {
  constexpr double kBeyondInt = 2147483648.0;
  const double read = std::trunc(static_cast<double>(narrowed(value)));
  return std::fabs(read) < kBeyondInt ? read : -kBeyondInt;
}

std::string text(double value) {
  std::ostringstream stream;
  stream.precision(9);
  stream << value;
  return stream.str();
}

// `stored` are the numbers of stored values, before any shift or exchange.
void noteLosses(const Numbers& numbers, const Numbers& stored, std::vector<std::string>& notes) {
  constexpr double kInvisible = 0.001;  // of the window: a quarter of one of 256 grey levels
  std::string losses;
  double worst = 0;
  const auto look = [&](const char* name, double value) {
    if (std::fabs(asRead(value) - value) <= kInvisible * std::fabs(numbers.window)) return;
    losses +=
        std::string(losses.empty() ? "" : ", ") + name + ' ' + text(value) + " as " + text(asRead(value));
    worst = std::max(worst, std::fabs(asRead(value) - value));
  };
  look("window", numbers.window);
  look("level", numbers.level);
  look("intercept", numbers.intercept);
  if (losses.empty()) return;
  std::string note = "the converter reads whole numbers only: " + losses;
  constexpr double kVisible = 0.01;  // of the window
  if (worst > kVisible * std::fabs(numbers.window) && stored.slope != 0) {
    note += "; for the same look without rescaling state --slope 1 --intercept 0 --window " +
            text(std::max(1.0, std::round(std::fabs(stored.window / stored.slope)))) + " --level " +
            text(std::round((stored.level - stored.intercept) / stored.slope));
  }
  notes.push_back(note);
}

Ei4Preamble checked(const Ei4Preamble& preamble) {
  if (!std::isfinite(preamble.window) || !std::isfinite(preamble.level) || !std::isfinite(preamble.slope) ||
      !std::isfinite(preamble.intercept)) {
    throw std::range_error(
        "this slope and intercept make the window or level infinite: state --window and --level");
  }
  return preamble;
}

}  // namespace

Ei4Preamble preambleOf(const Picture& picture, std::optional<int> bits, const PreambleWishes& wishes) {
  Ei4Preamble preamble;
  preamble.intercept = wishes.intercept.value_or(preamble.intercept);
  preamble.slope = wishes.slope.value_or(preamble.slope);
  showFullRange(preamble, bits.value_or(picture.bitsPerPixel));
  preamble.window = wishes.window.value_or(preamble.window);
  preamble.level = wishes.level.value_or(preamble.level);
  return checked(preamble);
}

Ei4Preamble preambleOfStored(Source& source, const PreambleWishes& wishes) {
  const StoredValues& file = source.stored.value();
  Numbers stored{};
  stored.slope = wishes.slope ? static_cast<double>(*wishes.slope) : file.slope;
  stored.intercept = wishes.intercept ? static_cast<double>(*wishes.intercept) : file.intercept;
  Numbers numbers = stored;
  numbers.intercept += file.atZero * stored.slope;
  Samples samples(source.picture);
  if (file.lowIsWhite != (stored.slope < 0)) {
    const int highest = (1 << source.picture.bitsPerPixel) - 1;
    for (std::size_t i = 0; i < samples.count(); ++i) samples.set(i, highest - samples.at(i));
    numbers.intercept += highest * numbers.slope;
    numbers.slope = -numbers.slope;
  }
  showWhatOccurs(samples, numbers);
  numbers.window = wishes.window ? static_cast<double>(*wishes.window) : file.window.value_or(numbers.window);
  numbers.level = wishes.level ? static_cast<double>(*wishes.level) : file.level.value_or(numbers.level);
  stored.window = numbers.window;
  stored.level = numbers.level;
  noteLosses(numbers, stored, source.notes);

  Ei4Preamble preamble;
  preamble.slope = narrowed(numbers.slope);
  preamble.intercept = narrowed(numbers.intercept);
  preamble.window = narrowed(numbers.window);
  preamble.level = narrowed(numbers.level);
  return checked(preamble);
}

}  // namespace ei4::tools
