#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "encoder/ei4_writer.h"

namespace ei4::samples {

/// An invented picture, in the shape that the encoder takes.
struct SamplePicture {
  std::string name;
  int width = 0;
  int height = 0;
  int bytesPerPixel = 1;
  int bitsPerPixel = 8;
  std::vector<unsigned char> pixels;  ///< 16-bit samples in host byte order
  tools::Ei4Preamble preamble;
};

SamplePicture makeCtSlice();     ///< "ct_512": an axial slice of a chest, 12 bits, Hounsfield units + 1024
SamplePicture makeRadiograph();  ///< "radiograph": a hand, 2048 x 2500, 12 bits
SamplePicture makeMrSlice();     ///< "mr": an axial slice of a head, 384 x 384, 10 bits
SamplePicture makeUltrasound();  ///< "ultrasound": a colour sector with a Doppler box, 640 x 480
SamplePicture makeAngiogram();   ///< "grey8": a vessel tree filled with contrast, 1024 x 768, 8 bits
SamplePicture makeSpine();       ///< "spine": a whole bent spine from the front, 1024 x 2048, 12 bits
SamplePicture makeFetus();       ///< "fetus": four planes of obstetric ultrasound, 800 x 600, 8 bits

/// Puts grey samples of 8 or 16 bits into the bytes of a picture.
void setGreyPixels(SamplePicture& picture, const std::vector<std::uint16_t>& samples);

}  // namespace ei4::samples
