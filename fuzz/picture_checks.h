// What the target `picture` tries, by the kind of input. Each of these ends the process when something does not hold.
#pragma once

#include <cstdint>
#include <span>

#include "ei4make/picture.h"
#include "input.h"

namespace ei4::fuzz {

/// Pixels of the largest picture that is read in full.
inline constexpr std::uint64_t kMostFuzzedPixels = std::uint64_t{1} << 20;

/// That a picture is one: sides, format, as many bytes as these make, no sample beyond its bits.
void checkPicture(const tools::Picture& picture);

/// The sample of a grey picture, or the component of a colour one, with this number.
int sampleAt(const tools::Picture& picture, std::size_t i);

void tryPnm(std::span<const std::uint8_t> file);
void tryPng(std::span<const std::uint8_t> file);
void tryDicomFile(std::span<const std::uint8_t> file);
void tryDataSet(Input input);
void tryRleHeader(Input input);
void tryJpegHeader(Input input);
void tryFramePixels(Input input, bool hasPalette);
void tryInflate(Input input);

}  // namespace ei4::fuzz
