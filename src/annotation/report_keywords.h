// The keywords that begin a report's lines, and what each line means.
#pragma once

#include <array>

#include "annotation/ann_mode.h"

inline constexpr int kReportCodes = 37;

/// The keywords in the order in which a line is compared with them: the first that the line begins with wins.
/// Trailing blanks belong to the keyword.
extern const std::array<const char*, kReportCodes> m_pReportCodes;

/// The number of the keyword with which a zero-terminated line begins; -1 when it begins with none.
int findReportCode(const char* line);

/// What a line with a keyword asks for.
enum class ReportLine { ignored, size, rescale, pixel, clip, light, roi, patientOrientation, annotation };

struct ReportAction {
  ReportLine line;
  ANN_MODE kind;  ///< of an annotation line; ANN_OVAL otherwise
  int version;    ///< of an annotation line: from 1 on it carries an orientation
};

/// The action of keyword `code`, 0 to kReportCodes - 1. Ignored rows reserve their keyword: such lines are
/// skipped.
const ReportAction& reportAction(int code);
