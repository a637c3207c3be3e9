// DICOM files for tests, written by the library that is to read them, or by hand where they are to be wrong.
#pragma once

#include <dcmtk/config/osconfig.h>
// The configuration has to stand in front of all other headers of the library.
#include <dcmtk/dcmdata/dcdatset.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcfilefo.h>
#include <dcmtk/dcmdata/dcuid.h>
#include <dcmtk/dcmdata/dcxfer.h>

#include <cstdint>
#include <vector>

#include "support/cli_temp_folder.h"

namespace ei4::test {

/// One picture's attributes and pixels. Begins as unsigned MONOCHROME2.
class DicomBuilder {
 public:
  DicomBuilder(int width, int height, int allocated, int stored) {
    text(DCM_SOPClassUID, UID_SecondaryCaptureImageStorage);
    text(DCM_SOPInstanceUID, "1.2.3.4.5.6");
    text(DCM_PatientName, "SECRET^PATIENT");
    text(DCM_PhotometricInterpretation, "MONOCHROME2");
    number(DCM_SamplesPerPixel, 1);
    number(DCM_Rows, height);
    number(DCM_Columns, width);
    number(DCM_BitsAllocated, allocated);
    number(DCM_BitsStored, stored);
    number(DCM_HighBit, stored - 1);
    number(DCM_PixelRepresentation, 0);
  }

  DicomBuilder& text(const DcmTagKey& tag, const char* value) {
    format_.getDataset()->putAndInsertString(tag, value);
    return *this;
  }
  DicomBuilder& number(const DcmTagKey& tag, int value) {
    format_.getDataset()->putAndInsertUint16(tag, static_cast<Uint16>(value));
    return *this;
  }
  DicomBuilder& without(const DcmTagKey& tag) {
    format_.getDataset()->findAndDeleteElement(tag);
    return *this;
  }
  DicomBuilder& colour(const char* model, int planar = 0) {
    return text(DCM_PhotometricInterpretation, model)
        .number(DCM_SamplesPerPixel, 3)
        .number(DCM_PlanarConfiguration, planar);
  }
  DicomBuilder& words(const std::vector<std::uint16_t>& pixels, const DcmTagKey& tag = DCM_PixelData) {
    format_.getDataset()->putAndInsertUint16Array(tag, pixels.data(), pixels.size());
    return *this;
  }
  DicomBuilder& bytes(Bytes pixels) {
    if (pixels.size() % 2 != 0) pixels.push_back(0);
    format_.getDataset()->putAndInsertUint8Array(DCM_PixelData, pixels.data(), pixels.size());
    return *this;
  }
  DcmDataset& items() { return *format_.getDataset(); }

  /// The file in a transfer syntax, for which the encoder must be registered.
  Bytes file(E_TransferSyntax syntax = EXS_LittleEndianExplicit) {
    const TempFolder folder;
    const std::string path = folder.path("picture.dcm");
    const DcmXfer xfer(syntax);
    if (xfer.isEncapsulated()) {
      if (format_.getDataset()->chooseRepresentation(syntax, nullptr).bad()) return {};
    }
    if (format_.saveFile(path.c_str(), syntax).bad()) return {};
    return folder.read("picture.dcm");
  }

 private:
  DcmFileFormat format_;
};

}  // namespace ei4::test
