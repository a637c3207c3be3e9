#include "report_text.h"

#include <cmath>
#include <sstream>

namespace ei4::bench {

namespace {

void addAnnotation(std::ostream& text, int number, int width, int height) {
  // Spread evenly, without rows: multiples of two irrational numbers, their whole parts dropped.
  const auto spread = [number](double step, int side) {
    return side / 10 + static_cast<int>(std::fmod(number * step, 1.0) * 0.6 * side);
  };
  const int x = spread(0.7548776662, width);
  const int y = spread(0.5698402910, height);
  const int x2 = x + width / 8 + number * 31 % (width / 8 + 1);
  const int y2 = y + height / 12 + number * 17 % (height / 8 + 1);
  const int middle = (x + x2) / 2;
  const auto begin = [&](const char* keyword) -> std::ostream& {
    return text << keyword << ' ' << number << " ffff " << x << ' ' << y << " 1 1 " << x - width / 50 << ' '
                << y << ' ' << middle << ' ' << y - height / 50 << " 0 | ";
  };
  switch (number % 10) {
    case 0:
    case 1:
    case 2:
      begin("ruler_x") << x2 << ' ' << y2 << " 123.4+mm";
      break;
    case 3:
      begin("angle_x") << x2 << ' ' << y2 << ' ' << x2 << ' ' << y << " 37+deg";
      break;
    case 4:
      begin("oval_x") << x2 << ' ' << y2 << " 12.3+cm2 12.3";
      break;
    case 5:
      begin("houns_x") << x2 << ' ' << y2 << " 41+HU 41.0";
      break;
    case 6:
      begin("text_x") << "0 note";
      break;
    case 7:
      begin("pointer_x") << "1 3 here";
      break;
    case 8:
      begin("cobangle_x") << x << ' ' << y2 << ' ' << x2 << ' ' << y << ' ' << x2 << ' ' << y2 << " 21+deg";
      break;
    default:
      begin("free_x") << "5 " << x2 << ' ' << y2 << ' ' << x2 << ' ' << y << ' ' << middle << ' ' << y << ' '
                      << x << ' ' << (y + y2) / 2 << ' ' << x << ' ' << y2 << " region";
  }
  text << '\n';
}

}  // namespace

std::string reportText(int width, int height, int annotations) {
  std::ostringstream text;
  text << "sized " << width << ' ' << height << " 0 0\n"
       << "clip 1 0 0 " << width << ' ' << height << "\n"
       << "light 2000 1000 0 0\n"
       << "pixel 0.15 0.15\n"
       << "patient_orientation 0 L F\n";
  for (int number = 1; number <= annotations; ++number) addAnnotation(text, number, width, height);
  return text.str();
}

}  // namespace ei4::bench
