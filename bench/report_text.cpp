#include "report_text.h"

#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace ei4::bench {

namespace {

void addLine(std::string& text, const char* format, ...) __attribute__((format(printf, 2, 3)));

void addLine(std::string& text, const char* format, ...) {
  std::array<char, 512> line{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line.data(), line.size(), format, arguments);
  va_end(arguments);
  text += line.data();
  text += '\n';
}

void addAnnotation(std::string& text, int number, int width, int height) {
  // Spread evenly, without rows: multiples of two irrational numbers, their whole parts dropped.
  const auto spread = [number](double step, int side) {
    return side / 10 + static_cast<int>(std::fmod(number * step, 1.0) * 0.6 * side);
  };
  const int x = spread(0.7548776662, width);
  const int y = spread(0.5698402910, height);
  const int x2 = x + width / 8 + number * 31 % (width / 8 + 1);
  const int y2 = y + height / 12 + number * 17 % (height / 8 + 1);
  const auto add = [&](const char* keyword, const std::string& fields) {
    addLine(text, "%s %d ffff %d %d 1 1 %d %d %d %d 0 | %s", keyword, number, x, y, x - width / 50, y,
            (x + x2) / 2, y - height / 50, fields.c_str());
  };
  const std::string end = std::to_string(x2) + ' ' + std::to_string(y2);
  const std::string side = std::to_string(x2) + ' ' + std::to_string(y);
  switch (number % 10) {
    case 0:
    case 1:
    case 2:
      return add("ruler_x", end + " 123.4+mm");
    case 3:
      return add("angle_x", end + ' ' + side + " 37+deg");
    case 4:
      return add("oval_x", end + " 12.3+cm2 12.3");
    case 5:
      return add("houns_x", end + " 41+HU 41.0");
    case 6:
      return add("text_x", "0 note");
    case 7:
      return add("pointer_x", "1 3 here");
    case 8:
      return add("cobangle_x", side + ' ' + end + ' ' + end + " 21+deg");
    default:
      return add("free_x", "5 " + end + ' ' + side + ' ' + std::to_string(x) + ' ' + std::to_string(y2) +
                               ' ' + std::to_string((x + x2) / 2) + ' ' + std::to_string(y) + ' ' +
                               std::to_string(x) + ' ' + std::to_string((y + y2) / 2) + " region");
  }
}

}  // namespace

std::string reportText(int width, int height, int annotations) {
  std::string text;
  addLine(text, "sized %d %d 0 0", width, height);
  addLine(text, "clip 1 0 0 %d %d", width, height);
  addLine(text, "light 2000 1000 0 0");
  addLine(text, "pixel 0.15 0.15");
  addLine(text, "patient_orientation 0 L F");
  for (int number = 1; number <= annotations; ++number) addAnnotation(text, number, width, height);
  return text;
}

}  // namespace ei4::bench
