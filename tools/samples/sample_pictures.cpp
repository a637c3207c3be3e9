#include "samples/sample_pictures.h"

#include <cstdint>
#include <cstring>

namespace ei4::samples {

void setGreyPixels(SamplePicture& picture, const std::vector<std::uint16_t>& samples) {
  if (picture.bytesPerPixel == 1) {
    picture.pixels.assign(samples.begin(), samples.end());
    return;
  }
  picture.pixels.resize(2 * samples.size());
  std::memcpy(picture.pixels.data(), samples.data(), picture.pixels.size());
}

}  // namespace ei4::samples
