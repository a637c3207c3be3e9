// The annotations of one picture and the view under which they were made.
#pragma once

#include "annotation/ann_mode.h"
#include "annotation/annotation.h"
#include "annotation/report_keywords.h"
#include "annotation/report_limits.h"
#include "draw/cdc.h"
#include "text/image_mode.h"
#include "types/list.h"
#include "types/orientation.h"
#include "types/types.h"

/// Image coordinates: pixels of the stored picture, of m_sizeImg. Display coordinates: pixels of the picture
/// that is drawn; the stored picture is turned or mirrored, then zoomed, then moved by m_ptOffset.
class CAnnotationSet {
 public:
  CAnnotationSet();
  virtual ~CAnnotationSet();
  CAnnotationSet(const CAnnotationSet&) = delete;
  CAnnotationSet& operator=(const CAnnotationSet&) = delete;

  /// Reads a report: view lines into the members, annotation lines into the list. Annotations count only
  /// behind a good "sized" and a good "light" line; what is malformed or unknown is skipped.
  /// text     zero-terminated, not changed; null reads nothing
  /// sizeImg  size of the picture, pixels; taken over by a "sized" line if neither side is 0
  /// nCalc    non-zero: annotations measure themselves
  /// Returns 1 when the last "sized" and the last "light" line were good, else 0. Returns 0, too,
  /// for a report that passes a limit (annotation/report_limits.h): no annotation is then left.
  int SetAnnotationSetReport(char* text, CSize sizeImg, int nCalc);

  // One view line each; `text` stands on the first field and may be null. Returns 1, or 0 having changed
  // nothing.
  int EvalReportedSize(char* text, CSize sizeImg);
  int EvalReportedRescale(char* text);
  int EvalReportedPixel(char* text);
  int EvalReportedClip(char* text);
  int EvalReportedLight(char* text);
  int EvalReportedRoi(char* text);
  int EvalReportedPatientOrientation(char* text);

  /// Makes an annotation with the lowest free number and puts it at the end of the list; the set owns it.
  /// sizeImg becomes m_sizeImg if neither side is 0, `orient` always becomes m_Orientation. Returns null for
  /// a kind without a class.
  CAnnotation* CreateAnnotation(ANN_MODE kind, CPoint pt, unsigned int color, CSize sizeImg,
                                ORIENTATION orient);
  void DeleteAnnotation(CAnnotation* annotation);  ///< ignores what is not in the list
  void DeleteAnnotations();
  void DeleteAnnotations(int bCalib);  ///< non-zero: the calibrations; zero: all others
  int IsAnnotation(int bCalib);        ///< is there a calibration (non-zero), or anything else (zero)?

  void SetDstImageSize(CSize size);  ///< display pixels; the zoom follows
  CSize GetDstImageSize() const;
  /// Ignored unless both exceed 0; the display size follows.
  void SetImgZoomFactor(double zoomX, double zoomY);
  void SetViewParameters(ORIENTATION orient, double zoomX, double zoomY, CPoint offset);

  /// Coordinates that an int can't hold end at its limits, and a zoom that is not a number gives 0.
  CPoint ImageToDisplay(CPoint pt) const;
  /// The inverse, up to truncation. With a zoom of 0.0001 or less nothing is moved or scaled.
  CPoint DisplayToImage(CPoint pt) const;
  /// The region of interest on the display, or the whole picture's place if there is none.
  CRect GetRoiDisplay() const;

  int IsImageFit() const;
  int IsImageZoom() const;
  int IsImageActual() const;

  /// All but the calibrations, in list order, then the frame of the region of interest.
  void PaintAnnotations(CDC* dc, double scale);
  /// The calibrations only.
  void PaintCalibrations(CDC* dc, double scale);

  /// The letters at the edges that say where the patient's head, feet, ... are, within the visible part of
  /// a picture of sizeDst pixels. pt and sizeA are not used.
  void PaintOrientation(CDC* dc, CPoint pt, CSize sizeA, CSize sizeDst, double scale);
  /// codeRow, codeCol  where the stored picture's x and y axes point, at most 3 letters each, never null
  /// rect              the visible part, display pixels
  void PaintOrientation(const char* codeRow, const char* codeCol, ORIENTATION orient, CDC* dc, CRect rect,
                        CSize sizeDst, double scale);
  /// Replaces each direction letter by its opposite, in place.
  static void InvPatientOrientationCode(char* code);

  CList<CAnnotation*, CAnnotation*> m_listAnnotations{10};  ///< in creation order; owned
  CSize m_sizeImg{256, 256};                                ///< reports never make a side 0
  CSize m_sizeDst{0, 0};                                    ///< display size of the whole picture
  IMAGE_MODE m_ImageMode = IMAGE_ZOOM;
  double m_dZoomX = 1.0;  ///< display pixels per image pixel, along the stored picture's rows
  double m_dZoomY = 1.0;
  ORIENTATION m_Orientation = ORIENTATION_AS_STORED;  ///< any int; outside 0 to 7 points stay as stored
  CPoint m_ptOffset{0, 0};                            ///< where the zoomed picture's corner lies
  CSize m_sizeClip{256, 256};                         ///< the visible part
  double m_dPixelX = 0.0;                             ///< length units per image pixel; 0: unknown
  double m_dPixelY = 0.0;
  double m_dRescale1 = 0.0;
  double m_dRescale2 = 1.0;
  int m_nRescale = 0;
  char m_szOrientRow[4] = {};
  char m_szOrientCol[4] = {};
  /// Whether the last line of each kind was good: "sized", "rescale", "pixel", "clip", "light".
  enum Reported { REPORTED_SIZED, REPORTED_RESCALE, REPORTED_PIXEL, REPORTED_CLIP, REPORTED_LIGHT };
  int m_bReported[5] = {};
  int m_nLightWindow = 0;
  int m_nLightLevel = 0;
  int m_bLight1 = 0;  ///< invert
  int m_bLight2 = 0;
  unsigned int m_nPatientOrientation = 0xFFFFFF;
  int m_bRoiRead = 0;
  int m_bRoi = 0;
  CRect m_rectRoi{0, 0, 0, 0};       ///< image coordinates
  ei4::ReportAllowance m_allowance;  ///< what a report may still hold

 private:
  /// As CreateAnnotation, but numbered by the caller.
  CAnnotation* AppendAnnotation(ANN_MODE kind, int nIndex, CPoint pt, unsigned int color, CSize sizeImg,
                                ORIENTATION orient);
  int LowestFreeIndex();
  bool AreViewLinesRead() const;  ///< the last "sized" and the last "light" line were good
  void ReadReportLine(char* line, CSize sizeImg, int nCalc);
  void ReadAnnotationLine(char* line, const ReportAction& action, int nCalc);
  void TakeFromAllowance(CAnnotation& annotation);
};
