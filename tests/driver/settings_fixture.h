// Tests of code that reads and writes the process-wide settings: each starts with the
// settings of a fresh process.
#pragma once

#include <gtest/gtest.h>

#include "driver/settings.h"

namespace ei4::test {

inline void resetSettings() {
  szInFile = szOutFile = szReportFile = nullptr;
  csSrc = csDst = CSize(0, 0);
  bSrcSize = bDstSize = bInColorType = bOutColorType = 0;
  nInputColorType = nOutputColorType = COLOR_TYPE_C08;
  nWindow = nLevel = bWL = bInvert = m_nJpgQuality = m_bHasJpgQuality = helpOnly = 0;
  dSlope = dIntercept = 0.0;
  bBlob = false;
  pImageFromEI4.reset();
}

class SettingsTest : public testing::Test {
 protected:
  void SetUp() override { resetSettings(); }
  void TearDown() override { resetSettings(); }
};

}  // namespace ei4::test
