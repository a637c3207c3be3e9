// The kinds of annotation.
#pragma once

/// The values are fixed; 1 and 9 are not used.
enum ANN_MODE : int {
  ANN_OVAL = 0,
  ANN_RULER = 2,
  ANN_ANGLE = 3,
  ANN_LIGHT = 4,
  ANN_AREA = 5,
  ANN_FREE = 6,
  ANN_POINTER = 7,
  ANN_TEXT = 8,
  ANN_SPNLABEL = 10,
  ANN_COBANGLE = 11,
  ANN_CALIB = 12,
  ANN_OB_GSD = 13,  ///< obstetric measurements, down to ANN_OB_FL
  ANN_OB_CRL = 14,
  ANN_OB_BPD = 15,
  ANN_OB_HC = 16,
  ANN_OB_AC = 17,
  ANN_OB_FL = 18,
};
