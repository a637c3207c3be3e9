// The job of this run. One process converts one image, so its settings are process-wide: written once
// from the command line, corrected by a compressed input's preamble, then only read. All start at zero,
// false or null. One more, iVerbose, lives with the drawing that reads it; the driver alone sets it,
// and no option does so yet.
#pragma once

#include <memory>

#include "draw/drawing_globals.h"  // iVerbose
#include "image/color_type.h"
#include "image/dicom_image.h"
#include "types/types.h"

extern const char* szInFile;  ///< a `.ei4` file, a blob entry's path (with bBlob) or a raw image; may be null
extern const char* szOutFile;     ///< its extension chooses the writer; may be null
extern const char* szReportFile;  ///< annotation report; when set, the report picture is made instead

extern CSize csSrc;   ///< pixels: "-size", or the decoded size of a compressed input
extern int bSrcSize;  ///< "-size" was complete; nothing reads it
extern CSize csDst;   ///< pixels: "-geom", the box that the output has to fit
extern int bDstSize;  ///< "-geom" was complete

extern COLOR_TYPE nInputColorType;   ///< "-incolor", or the format of a compressed input
extern int bInColorType;             ///< "-incolor" was given; nothing reads it
extern COLOR_TYPE nOutputColorType;  ///< "-outcolor"
extern int bOutColorType;            ///< "-outcolor" was given

extern int nWindow;        ///< window width, rescaled units
extern int nLevel;         ///< window centre, rescaled units
extern double dSlope;      ///< rescaled = stored * dSlope + dIntercept; any double, also NaN and infinities
extern double dIntercept;  ///< see dSlope
extern int bWL;            ///< map pixels through the window/level table
extern int bInvert;        ///< exchange black and white

extern int m_nJpgQuality;     ///< 0 to 100, as given: not checked
extern int m_bHasJpgQuality;  ///< a JPEG output is refused without it

extern bool bBlob;    ///< szInFile names an entry of a blob container
extern int helpOnly;  ///< the usage text was asked for; nothing is converted

/// The decoded compressed input, or null. Made by PrepEI4, taken over by the flow that consumes it.
extern std::unique_ptr<CDicomImage> pImageFromEI4;
