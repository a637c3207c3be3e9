// What stands in for the reading of PNG in a build without libpng.
#include "ei4make/png_picture.h"

namespace ei4::tools {

const bool kReadsPng = false;

Picture readPng(std::span<const unsigned char> /*file*/) {
  throw PictureError("this ei4make was built without libpng and reads no PNG");
}

}  // namespace ei4::tools
