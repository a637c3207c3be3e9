#pragma once

#include <span>

#include "ei4make/picture.h"

namespace ei4::tools {

/// Whether this build reads PNG.
extern const bool kReadsPng;

/// Reads a PNG: grey of up to 8 bits as 8 bits, with white at 255, grey of 16 bits, colour of 8 bits and palettes
/// as colour. A 16-bit picture whose sBIT chunk states 9 to 15 significant bits comes back to these when all
/// samples are such values scaled up. An alpha channel is left out when every pixel is opaque.
/// Throws PictureError for all else: 16-bit colour, transparent pixels, damaged and cut files. The picture's memory
/// grows with the rows that are there.
Picture readPng(std::span<const unsigned char> file);

}  // namespace ei4::tools
