#include "driver/process.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "driver/convertab.h"
#include "driver/jpg_writer.h"
#include "driver/options.h"
#include "driver/paths.h"
#include "driver/read_image.h"
#include "driver/settings.h"
#include "image/dicom_image.h"

namespace {

// The pixel format of the output, or nothing when the request is refused: a JPEG has no 16-bit grey, and it
// takes the table to bring 16 bits down to 8.
std::optional<COLOR_TYPE> outputType(bool isJpg, COLOR_TYPE inType, bool hasOutType, COLOR_TYPE outType,
                                     bool table) {
  if (hasOutType) {
    if (isJpg && outType == COLOR_TYPE_M16) return std::nullopt;
    return outType;
  }
  if (!isJpg || inType != COLOR_TYPE_M16) return inType;
  if (!table) return std::nullopt;
  return COLOR_TYPE_M08;
}

// Finds the largest size of the image's shape inside the box. False when there is none.
bool fit(const CDicomImage& image, CSize box, CSize& fitted) {
  fitted = image.EncapsulatedSize(box);
  return fitted != CSize(0, 0) || box == image.m_Size;  // an empty picture fits an empty box
}

template <class Sample>
void mapSamples(CDicomImage& image, const void* table) {
  auto* samples = reinterpret_cast<Sample*>(image.m_pBuffer);
  const auto* entries = static_cast<const Sample*>(table);
  const std::size_t count = image.m_nBufferSize / sizeof(Sample);
  for (std::size_t i = 0; i < count; ++i) samples[i] = entries[samples[i]];
}

// Maps a grey image through the table where it stands: what painting it at its own size and format comes to,
// without a second picture in memory. False for colour and for a picture without pixels, which are painted.
bool mapInPlace(CDicomImage& image, const void* table) {
  if (image.m_nBufferSize == 0) return false;
  switch (image.GetColorType()) {
    case COLOR_TYPE_M08:
      mapSamples<std::uint8_t>(image, table);
      return true;
    case COLOR_TYPE_M16:
      mapSamples<std::uint16_t>(image, table);
      return true;
    default:
      return false;
  }
}

// Paints the whole image into a new one. Null when that fails.
std::unique_ptr<CDicomImage> paint(const CDicomImage& image, CSize size, void* table, int encapsulate,
                                   COLOR_TYPE type) {
  CDicomImage* painted = nullptr;
  // The painter scales the image to its "displayed size", which is therefore that of the destination as well.
  const int done = image.PaintImage(size, CPoint(0, 0), size, CRect(CPoint(0, 0), size),
                                    ORIENTATION_AS_STORED, 0, table, 0, encapsulate, type, &painted);
  std::unique_ptr<CDicomImage> result(painted);
  return done != 0 ? std::move(result) : nullptr;
}

}  // namespace

int ProcessImage(const char* szIn, const char* szOut, CSize csSource, int bHasGeom, CSize csGeom,
                 COLOR_TYPE nInType, int bHasOutType, COLOR_TYPE nOutType, int bTable, int nWidth,
                 int nCentre, double dScale, double dOffset, int bInverse, CSize& csOut, int nEncapsulate,
                 int bHasQuality, unsigned int nQuality) {
  const bool isJpg = IsJpg(szOut) != 0;
  if (isJpg && bHasQuality == 0) return 0;
  const auto type = outputType(isJpg, nInType, bHasOutType != 0, nOutType, bTable != 0);
  if (!type) return 0;

  if (bTable == 0) {
    if (*type != nInType) return 0;
    if (bHasGeom == 0 && isJpg) {
      csOut = csSource;
      return jpgCompressFile(szIn, *type, csSource, szOut, nQuality);
    }
    // Quirk raw-name-checked-once: only a plain copy asks for the name; with the table or "-geom" every name
    // but a ".jpg" is written raw.
    if (bHasGeom == 0 && IsRAW(szOut) == 0) return 0;
  }

  if (isJpg && bHasGeom == 0 && !JpgTakes(csSource)) return 0;  // before it costs anything
  auto image = pImageFromEI4 ? std::move(pImageFromEI4) : ReadDicomImage(szIn, csSource, nInType, nullptr);
  if (!image) return 0;
  csOut = csSource;
  if (bHasGeom != 0 && !fit(*image, csGeom, csOut)) return 0;
  if (isJpg && !JpgTakes(csOut)) return 0;

  Convertab table;
  if (bTable != 0) {
    const int inBits = Color2BitsUsed(nInType);
    table =
        CreateConvertab(dOffset, dScale, nWidth, nCentre, bInverse, inBits, 0, Color2BitsUsed(*type), inBits);
    if (!table) return 0;
  }

  std::unique_ptr<CDicomImage> painted;
  const bool resized = csOut != csSource || image->m_Size != csSource;
  const bool mapped = table && !resized && *type == nInType && mapInPlace(*image, table.get());
  if ((table && !mapped) || csOut != csSource || *type != nInType) {
    painted = paint(*image, csOut, table.get(), nEncapsulate, *type);
    if (!painted) return 0;
  }

  if (painted) {  // the writing needs memory of its own
    image.reset();
    table.reset();
  }
  const CDicomImage& result = painted ? *painted : *image;
  return isJpg ? jpgCompress(&result, szOut, nQuality) : result.SaveToFile(szOut);
}
