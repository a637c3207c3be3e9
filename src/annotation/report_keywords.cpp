#include "annotation/report_keywords.h"

#include <cstring>

namespace {

constexpr ReportAction kIgnored{ReportLine::ignored, ANN_OVAL, 0};
constexpr ReportAction view(ReportLine line) { return {line, ANN_OVAL, 0}; }
constexpr ReportAction annotation(ANN_MODE kind, int version) {
  return {ReportLine::annotation, kind, version};
}

struct Row {
  const char* keyword;
  ReportAction action;
};

constexpr std::array<Row, kReportCodes> kRows{{
    {"ID ", kIgnored},
    {"sized ", view(ReportLine::size)},
    {"rescale ", view(ReportLine::rescale)},
    {"pixel ", view(ReportLine::pixel)},
    {"clip ", view(ReportLine::clip)},
    {"light ", view(ReportLine::light)},
    {"ruler ", annotation(ANN_RULER, 0)},
    {"angle ", annotation(ANN_ANGLE, 0)},
    {"oval ", annotation(ANN_AREA, 0)},
    {"houns ", annotation(ANN_LIGHT, 0)},
    {"text ", annotation(ANN_TEXT, 0)},
    {"pointer ", annotation(ANN_POINTER, 0)},
    {"free ", annotation(ANN_FREE, 0)},
    {"calib ", annotation(ANN_CALIB, 0)},
    {"ruler_x ", annotation(ANN_RULER, 1)},
    {"angle_x ", annotation(ANN_ANGLE, 1)},
    {"oval_x ", annotation(ANN_AREA, 1)},
    {"houns_x ", annotation(ANN_LIGHT, 1)},
    {"text_x ", annotation(ANN_TEXT, 1)},
    {"pointer_x ", annotation(ANN_POINTER, 1)},
    {"freepointer_x ", annotation(ANN_POINTER, 2)},
    {"free_x ", annotation(ANN_FREE, 1)},
    {"calib_x ", annotation(ANN_CALIB, 1)},
    // Quirk keywords-without-end: these four have no blank, so lines that begin with longer words match as well.
    {"midrate", kIgnored},
    {"origviewmark", kIgnored},
    {"roi", view(ReportLine::roi)},
    {"patient_orientation", view(ReportLine::patientOrientation)},
    {"spinelabel_x ", annotation(ANN_SPNLABEL, 1)},
    {"cobangle ", kIgnored},
    {"cobangle_x ", annotation(ANN_COBANGLE, 1)},
    {"text_overlay_x ", kIgnored},
    {"obm_gsd_x ", annotation(ANN_OB_GSD, 1)},
    {"obm_crl_x ", annotation(ANN_OB_CRL, 1)},
    {"obm_bpd_x ", annotation(ANN_OB_BPD, 1)},
    {"obm_hc_x ", annotation(ANN_OB_HC, 1)},
    {"obm_ac_x ", annotation(ANN_OB_AC, 1)},
    {"obm_fl_x ", annotation(ANN_OB_FL, 1)},
}};

constexpr std::array<const char*, kReportCodes> keywords() {
  std::array<const char*, kReportCodes> all{};
  for (std::size_t i = 0; i < kRows.size(); ++i) all[i] = kRows[i].keyword;
  return all;
}

}  // namespace

constexpr std::array<const char*, kReportCodes> m_pReportCodes = keywords();

const ReportAction& reportAction(int code) { return kRows[static_cast<std::size_t>(code)].action; }

int findReportCode(const char* line) {
  for (std::size_t code = 0; code < kRows.size(); ++code) {
    const char* const keyword = kRows[code].keyword;
    // A report may have many millions of lines, most keywords differ in their first character.
    if (*line == *keyword && std::strncmp(line, keyword, std::strlen(keyword)) == 0)
      return static_cast<int>(code);
  }
  return -1;
}
