// The last step of a report picture: drawing on the painted image, and writing it. MagickCore must have been
// started.
#pragma once

#include <optional>

#include "image/dicom_image.h"

class CAnnotationSet;

/// True when a picture of such sides, in pixels, can be made: both are at least 1 and within the limits that the
/// library has for a side.
bool ReportPictureTakes(CSize size);

/// Draws the annotations and the patient's orientation over `painted`, 8-bit grey or colour, and writes the
/// result to the file `path`. The library chooses the format by the path's extension (MIFF when it knows none)
/// or by a format's name and a colon in front of it, which is then no part of the name; "%d" becomes 0.
/// quality  0 to 100; what it means in a format, and what other numbers mean, is up to the library. Without one
///          the library's defaults hold, but for a PNG that is deflated faster.
///
/// What cannot be made or written is left out without a word: sides that ReportPictureTakes refuses, more pixels
/// than the library may hold, a path that is null or of 4096 bytes and more, a file that cannot be written.
void WriteReportPicture(const CDicomImage& painted, CAnnotationSet& set, const char* path,
                        std::optional<unsigned int> quality);
