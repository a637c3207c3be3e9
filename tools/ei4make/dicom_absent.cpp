// What stands in for the reading of DICOM in a build without DCMTK.
#include "ei4make/dicom_picture.h"

namespace ei4::tools {

const bool kReadsDicom = false;

Source readDicom(std::span<const unsigned char> /*file*/, const DicomRequest& /*request*/) {
  throw PictureError("this ei4make was built without DCMTK and reads no DICOM");
}

}  // namespace ei4::tools
