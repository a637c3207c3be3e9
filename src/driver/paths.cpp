#include "driver/paths.h"

#include <cstring>

namespace {

int endsIn(const char* path, const char* extension) {
  if (path == nullptr) return 0;
  const char* lastDot = std::strrchr(path, '.');
  return lastDot != nullptr && std::strcmp(lastDot, extension) == 0 ? 1 : 0;
}

}  // namespace

int IsJpg(const char* path) { return endsIn(path, ".jpg"); }
int IsEI4(const char* path) { return endsIn(path, ".ei4"); }
int IsRAW(const char* path) { return endsIn(path, ".raw"); }
