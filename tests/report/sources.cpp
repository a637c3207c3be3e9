#include "report/sources.h"

namespace ei4::test {

const std::map<std::string, Source>& sources() {
  static const std::map<std::string, Source> all = {
      {"grey", {160, 120, 1, 1, [](int x, int y, int) { return 10 + x + y / 2; }}},       // 10 to 228
      {"deep", {120, 90, 1, 2, [](int x, int y, int) { return 1000 + 2 * x + 3 * y; }}},  // 1000 to 1505
      {"colour",
       {120, 90, 3, 1, [](int x, int y, int c) { return c == 0   ? 2 * x
                                                        : c == 1 ? 2 * y
                                                                 : 220 - x - y; }}},
      {"flat", {96, 64, 1, 1, [](int, int, int) { return 90; }}},
      {"broad", {256, 192, 1, 1, [](int, int, int) { return 150; }}},
  };
  return all;
}

}  // namespace ei4::test
