#include "driver/settings.h"

const char* szInFile = nullptr;
const char* szOutFile = nullptr;
const char* szReportFile = nullptr;

// CSize sets nothing by itself: these two are the zero of static storage.
CSize csSrc;
int bSrcSize = 0;
CSize csDst;
int bDstSize = 0;

COLOR_TYPE nInputColorType{};
int bInColorType = 0;
COLOR_TYPE nOutputColorType{};
int bOutColorType = 0;

int nWindow = 0;
int nLevel = 0;
double dSlope = 0.0;
double dIntercept = 0.0;
int bWL = 0;
int bInvert = 0;

int m_nJpgQuality = 0;
int m_bHasJpgQuality = 0;

bool bBlob = false;
int helpOnly = 0;

std::unique_ptr<CDicomImage> pImageFromEI4;
