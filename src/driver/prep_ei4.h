// From a compressed input to an image in memory.
#pragma once

#include "types/types.h"

/// Decodes the `.ei4` file `path`, or with `blob` the blob entry of that path, into pImageFromEI4, at about
/// the width of `target` (full size when null or 0 wide). Overwrites the settings bWL, dIntercept, dSlope,
/// nWindow and nLevel from the preamble, and csSrc and nInputColorType with what was decoded.
///
/// Returns false when the input cannot be read, is too short, or has no valid preamble and stream header;
/// from a valid preamble on the window settings are overwritten all the same. Once the header is accepted
/// it returns true: a failure after that shows as a null pImageFromEI4. So does a size that the asked
/// output (szOutFile, with neither bDstSize nor szReportFile) cannot have, or that an input of this length may
/// not claim (driver/picture_limit.h): nothing is decoded then.
/// Throws std::bad_alloc only.
bool PrepEI4(const char* path, bool blob, const CSize* target);
