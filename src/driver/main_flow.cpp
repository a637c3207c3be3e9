#include "driver/main_flow.h"

#include <magick/MagickCore.h>

#include <cstdio>
#include <new>

#include "draw/font_folder.h"
#include "driver/heap.h"
#include "driver/library_failure.h"
#include "driver/options.h"
#include "driver/paths.h"
#include "driver/prep_ei4.h"
#include "driver/process.h"
#include "driver/report_image.h"
#include "driver/settings.h"

namespace {

// MagickCore sets its own signal handlers, which remove its temporary files.
void startMagickCore(const char* program) {
  ei4::endRunWhenLibraryFails();
  MagickCoreGenesis(program, MagickTrue);
  SetMagickResourceLimit(ThreadResource, 1);  // a short run never earns back what a pool of threads costs
}

// What became of the run. The compressed input's early failure ends the process at once, without a result
// line and without stopping MagickCore.
enum class Outcome { done, failedSilently, failed, failedEarly };

Outcome makeReportPicture() {
  AddFontFolder();  // only these pictures show text
  if (bDstSize == 0) csDst = CSize(0, 0);
  return CreateReportImageFile(szInFile, nInputColorType, csSrc, szOutFile, csDst, m_bHasJpgQuality,
                               static_cast<unsigned>(m_nJpgQuality), szReportFile, dIntercept, dSlope) != 0
             ? Outcome::done
             : Outcome::failedSilently;
}

Outcome convertImage() {
  CSize csOut(0, 0);
  if (ProcessImage(szInFile, szOutFile, csSrc, bDstSize, csDst, nInputColorType, bOutColorType,
                   nOutputColorType, bWL, nWindow, nLevel, dSlope, dIntercept, bInvert, csOut,
                   /*nEncapsulate=*/1, m_bHasJpgQuality, static_cast<unsigned>(m_nJpgQuality)) == 0) {
    return Outcome::failed;
  }
  std::printf("%ld %ld\n", csOut.cx, csOut.cy);
  return Outcome::done;
}

Outcome runJob() {
  if (IsEI4(szInFile) != 0) {
    // The report picture is always made from the image at full size.
    const CSize* target = bDstSize != 0 && szReportFile == nullptr ? &csDst : nullptr;
    if (!PrepEI4(szInFile, bBlob, target)) return Outcome::failedEarly;
  }
  if (!pImageFromEI4) ei4::prepareHeap(csSrc, 0);
  return szReportFile != nullptr ? makeReportPicture() : convertImage();
}

}  // namespace

int RunConverter(int count, const char* const* words) {
  startMagickCore(count > 0 ? words[0] : nullptr);
  ReadArgs(count, words);
  ei4::setEndAfterLibraryFailure(1, /*emptyLine=*/szReportFile == nullptr);

  Outcome outcome = Outcome::done;
  if (helpOnly == 0) {
    try {
      outcome = runJob();
    } catch (const std::bad_alloc&) {  // the one place where memory that ran out becomes a failed conversion
      outcome = szReportFile != nullptr ? Outcome::failedSilently : Outcome::failed;
    }
  }
  // Quirk early-exit-keeps-library: the settings and the library's state are left to the end of the process.
  if (outcome == Outcome::failedEarly) return 1;
  if (outcome == Outcome::failed) std::putchar('\n');

  const int status = outcome == Outcome::done ? 0 : 1;
  ei4::setEndAfterLibraryFailure(status, /*emptyLine=*/false);
  MagickCoreTerminus();
  return status;
}
