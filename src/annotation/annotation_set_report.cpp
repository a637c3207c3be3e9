// Reading a report: view lines into the set, annotation lines into its list.

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "annotation/ann_free.h"
#include "annotation/ann_text.h"
#include "annotation/annotation_set.h"
#include "annotation/report_fields.h"
#include "annotation/report_keywords.h"
#include "text/scanner.h"

namespace {

// The next number as scanf's "%ld" takes it: it may end at any character.
bool takeLong(char*& text, long& value) {
  char* end = nullptr;
  value = std::strtol(text, &end, 10);
  if (end == text) return false;
  text = end;
  return true;
}

// As much of a word as the code has room for, and zeros behind it.
template <std::size_t N>
void storeCode(const CString& word, char (&code)[N]) {
  std::fill_n(code, N, '\0');
  std::copy_n(static_cast<const char*>(word), strnlen(word, N - 1), code);
}

long fitOffset(long clip, long displayed) { return displayed < clip ? (clip + 1 - displayed) / 2 : 0; }

}  // namespace

int CAnnotationSet::SetAnnotationSetReport(char* text, CSize sizeImg, int nCalc) {
  if (text != nullptr) m_allowance = ei4::ReportAllowance(std::strlen(text));
  // Quirk first-line-as-it-stands: blanks and comments are skipped in front of all lines but the first.
  for (char* line = text; line != nullptr && !m_allowance.IsExceeded();
       line = SkipCommentLines(NextLine(line)))
    ReadReportLine(line, sizeImg, nCalc);
  if (!m_allowance.IsExceeded()) return AreViewLinesRead() ? 1 : 0;
  DeleteAnnotations();
  return 0;
}

bool CAnnotationSet::AreViewLinesRead() const {
  return m_bReported[REPORTED_SIZED] != 0 && m_bReported[REPORTED_LIGHT] != 0;
}

void CAnnotationSet::ReadReportLine(char* line, CSize sizeImg, int nCalc) {
  const int code = findReportCode(line);
  if (code < 0) return;
  const ReportAction& action = reportAction(code);
  switch (action.line) {
    case ReportLine::ignored:
      break;
    case ReportLine::size:
      m_bReported[REPORTED_SIZED] = EvalReportedSize(NextWord(line), sizeImg);
      break;
    case ReportLine::rescale:
      m_bReported[REPORTED_RESCALE] = EvalReportedRescale(NextWord(line));
      break;
    case ReportLine::pixel:
      m_bReported[REPORTED_PIXEL] = EvalReportedPixel(NextWord(line));
      break;
    case ReportLine::clip:
      m_bReported[REPORTED_CLIP] = EvalReportedClip(NextWord(line));
      break;
    case ReportLine::light:
      m_bReported[REPORTED_LIGHT] = EvalReportedLight(NextWord(line));
      break;
    case ReportLine::roi:
      m_bRoiRead = EvalReportedRoi(NextWord(line));
      break;
    case ReportLine::patientOrientation:
      EvalReportedPatientOrientation(NextWord(line));
      break;
    case ReportLine::annotation:  // Quirk early-annotations-lost
      if (AreViewLinesRead()) ReadAnnotationLine(line, action, nCalc);
      break;
  }
}

void CAnnotationSet::ReadAnnotationLine(char* line, const ReportAction& action, int nCalc) {
  constexpr int kNumberedByTheLine = 0;
  CAnnotation* const annotation =
      AppendAnnotation(action.kind, kNumberedByTheLine, CPoint(0, 0), 0, m_sizeImg, m_Orientation);
  if (annotation == nullptr) return;
  const auto version = static_cast<unsigned int>(action.version);
  if (annotation->SetAnnotationReport(version, NextWord(line), nCalc) == 0) {
    DeleteAnnotation(annotation);
    return;
  }
  if (auto* const label = dynamic_cast<CAnnSpnLabel*>(annotation)) label->m_bFromReport = 1;
  TakeFromAllowance(*annotation);
}

void CAnnotationSet::TakeFromAllowance(CAnnotation& annotation) {
  const auto takeLabel = [this](const CString& label) {
    const int bytes = label.GetLength();
    m_allowance.labelBytes = bytes <= ei4::kMostLabelBytes ? m_allowance.labelBytes - bytes : -1;
  };
  m_allowance.annotations -= 1;
  takeLabel(annotation.m_strValue);
  if (const auto* const text = dynamic_cast<const CAnnText*>(&annotation)) takeLabel(text->m_strText);
  if (const auto* const outline = dynamic_cast<const CAnnFree*>(&annotation))
    m_allowance.vertices -= outline->m_arrVertices.GetSize();
}

int CAnnotationSet::EvalReportedSize(char* text, CSize sizeImg) {
  ReportFields fields(text);
  const int width = fields.TakeInt();
  const int height = fields.TakeInt();
  const int mode = fields.TakeInt();
  const int orientation = fields.TakeInt();
  if (fields.Missing()) return 0;

  if (sizeImg.cx != 0 && sizeImg.cy != 0) m_sizeImg = sizeImg;
  m_ImageMode = Int2ImageMode(mode);
  m_Orientation = static_cast<ORIENTATION>(orientation);
  SetDstImageSize(CSize(width, height));
  return 1;
}

int CAnnotationSet::EvalReportedRescale(char* text) {
  ReportFields fields(text);
  const double first = fields.TakeReal();
  const double second = fields.TakeReal();
  const int number = fields.TakeInt();
  if (fields.Missing()) return 0;

  m_dRescale1 = first;
  m_dRescale2 = second;
  m_nRescale = number;
  return 1;
}

int CAnnotationSet::EvalReportedPixel(char* text) {
  ReportFields fields(text);
  const double x = fields.TakeReal();
  const double y = fields.TakeReal();
  if (fields.Missing()) return 0;

  m_dPixelX = x;
  m_dPixelY = y;
  return 1;
}

int CAnnotationSet::EvalReportedClip(char* text) {
  ReportFields fields(text);
  const double zoom = fields.TakeReal();
  const CPoint offset = fields.TakePoint();
  const CSize clip(fields.TakePoint());
  if (fields.Missing()) return 0;

  m_dZoomX = zoom;
  m_dZoomY = fields.MoreOnLine() ? fields.TakeReal() : zoom;
  m_ptOffset = offset;
  if (IsImageFit() != 0) {
    // Quirk fit-uses-last-clip: centred in the clip before this one.
    m_ptOffset.x = fitOffset(m_sizeClip.cx, m_sizeDst.cx);
    m_ptOffset.y = fitOffset(m_sizeClip.cy, m_sizeDst.cy);
  }
  m_sizeClip = clip;
  return 1;
}

int CAnnotationSet::EvalReportedLight(char* text) {
  ReportFields fields(text);
  const int window = fields.TakeInt();
  const int level = fields.TakeInt();
  const bool first = fields.TakeInt() != 0;
  const bool second = fields.TakeInt() != 0;
  if (fields.Missing()) return 0;

  m_nLightWindow = window;
  m_nLightLevel = level;
  m_bLight1 = first;
  m_bLight2 = second;
  return 1;
}

int CAnnotationSet::EvalReportedRoi(char* text) {
  if (text == nullptr || (*text != 'y' && *text != 'n')) return 0;
  const bool flag = *text == 'y';
  // Quirk roi-flag-is-a-character: what is written together with it is no part of it.
  char* numbers = text + 1;
  tagRECT rect;
  if (!takeLong(numbers, rect.left) || !takeLong(numbers, rect.top) || !takeLong(numbers, rect.right) ||
      !takeLong(numbers, rect.bottom))
    return 0;

  m_bRoi = flag;
  m_rectRoi = rect;
  return 1;
}

int CAnnotationSet::EvalReportedPatientOrientation(char* text) {
  ReportFields fields(text);
  const int number = fields.TakeInt();
  const CString row = fields.TakeText();
  const CString column = fields.TakeText();
  if (fields.Missing()) return 0;

  m_nPatientOrientation = static_cast<unsigned int>(number);
  storeCode(row, m_szOrientRow);
  storeCode(column, m_szOrientCol);
  return 1;
}
