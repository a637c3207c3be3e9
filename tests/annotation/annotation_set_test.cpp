#include "annotation/annotation_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>
#include <typeinfo>

#include "annotation/ann_angle.h"
#include "annotation/ann_cob_angle.h"
#include "annotation/ann_free.h"
#include "annotation/ann_oval.h"
#include "annotation/ann_pointer.h"
#include "annotation/ann_ruler.h"
#include "annotation/ann_text.h"
#include "annotation/ob_measure_oval.h"
#include "annotation/ob_measure_ruler.h"
#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationsOf;
using testing::ElementsAre;

CAnnotation* create(CAnnotationSet& set, ANN_MODE kind) {
  return set.CreateAnnotation(kind, CPoint(0, 0), 0, CSize(0, 0), ORIENTATION_AS_STORED);
}

template <class Class>
void expectClass(ANN_MODE kind) {
  CAnnotationSet set;
  CAnnotation* const made = create(set, kind);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(typeid(*made), typeid(Class)) << kind;
  EXPECT_EQ(made->GetAnnMode(), kind);
}

// The tree of the classes.
template <class Derived, class Base>
constexpr bool kIsA = std::is_base_of_v<Base, Derived>;
static_assert(kIsA<CAnnText, CAnnotation> && kIsA<CAnnSpnLabel, CAnnText>);
static_assert(kIsA<CAnnOval, CAnnotation> && kIsA<CAnnArea, CAnnOval> && kIsA<CObMeasureOval, CAnnArea>);
static_assert(kIsA<CObMeasureHC, CObMeasureOval> && kIsA<CObMeasureAC, CObMeasureOval>);
static_assert(kIsA<CAnnLight, CAnnOval> && !kIsA<CAnnLight, CAnnArea>);
static_assert(kIsA<CAnnRuler, CAnnotation> && kIsA<CAnnCalib, CAnnRuler> && kIsA<CObMeasureRuler, CAnnRuler>);
static_assert(!kIsA<CObMeasureRuler, CAnnCalib>);
static_assert(kIsA<CObMeasureGsd, CObMeasureRuler> && kIsA<CObMeasureCrl, CObMeasureRuler>);
static_assert(kIsA<CObMeasureBpd, CObMeasureRuler> && kIsA<CObMeasureFl, CObMeasureRuler>);
static_assert(kIsA<CAnnCOBAngle, CAnnotation> && kIsA<CAnnAngle, CAnnotation>);
static_assert(kIsA<CAnnPointer, CAnnotation> && kIsA<CAnnFree, CAnnotation>);

TEST(AnnotationSet, BeginsEmptyWithItsStatedView) {
  const CAnnotationSet set;
  EXPECT_TRUE(set.m_listAnnotations.IsEmpty());
  EXPECT_EQ(set.m_sizeImg, CSize(256, 256));
  EXPECT_EQ(set.m_sizeDst, CSize(0, 0));
  EXPECT_EQ(set.m_rectRoi, CRect(0, 0, 0, 0));
  EXPECT_EQ(set.m_ImageMode, IMAGE_ZOOM);
  EXPECT_EQ(set.m_dZoomX, 1.0);
  EXPECT_EQ(set.m_dZoomY, 1.0);
  EXPECT_EQ(set.m_Orientation, ORIENTATION_AS_STORED);
  EXPECT_EQ(set.m_ptOffset, CPoint(0, 0));
  EXPECT_EQ(set.m_sizeClip, CSize(256, 256));
  EXPECT_EQ(set.m_dPixelX, 0.0);
  EXPECT_EQ(set.m_dPixelY, 0.0);
  EXPECT_EQ(set.m_dRescale1, 0.0);
  EXPECT_EQ(set.m_dRescale2, 1.0);
  EXPECT_EQ(set.m_nRescale, 0);
  EXPECT_STREQ(set.m_szOrientRow, "");
  EXPECT_STREQ(set.m_szOrientCol, "");
  EXPECT_THAT(set.m_bReported, ElementsAre(0, 0, 0, 0, 0));
  EXPECT_EQ(set.m_nLightWindow, 0);
  EXPECT_EQ(set.m_nLightLevel, 0);
  EXPECT_EQ(set.m_bLight1, 0);
  EXPECT_EQ(set.m_bLight2, 0);
  EXPECT_EQ(set.m_nPatientOrientation, 0xFFFFFFu);
  EXPECT_EQ(set.m_bRoiRead, 0);
  EXPECT_EQ(set.m_bRoi, 0);
}

TEST(CreateAnnotation, MakesTheClassOfTheKind) {
  expectClass<CAnnRuler>(ANN_RULER);
  expectClass<CAnnAngle>(ANN_ANGLE);
  expectClass<CAnnLight>(ANN_LIGHT);
  expectClass<CAnnArea>(ANN_AREA);
  expectClass<CAnnFree>(ANN_FREE);
  expectClass<CAnnPointer>(ANN_POINTER);
  expectClass<CAnnText>(ANN_TEXT);
  expectClass<CAnnSpnLabel>(ANN_SPNLABEL);
  expectClass<CAnnCOBAngle>(ANN_COBANGLE);
  expectClass<CAnnCalib>(ANN_CALIB);
  expectClass<CObMeasureGsd>(ANN_OB_GSD);
  expectClass<CObMeasureCrl>(ANN_OB_CRL);
  expectClass<CObMeasureBpd>(ANN_OB_BPD);
  expectClass<CObMeasureHC>(ANN_OB_HC);
  expectClass<CObMeasureAC>(ANN_OB_AC);
  expectClass<CObMeasureFl>(ANN_OB_FL);
}

TEST(CreateAnnotation, MakesNothingForOtherKinds) {
  CAnnotationSet set;
  for (const int kind : {0, 1, 9, 19, 1000, -1})
    EXPECT_EQ(create(set, static_cast<ANN_MODE>(kind)), nullptr) << kind;
  EXPECT_TRUE(set.m_listAnnotations.IsEmpty());
}

TEST(CreateAnnotation, HandsOverPlaceColourOrientationAndSpacing) {
  CAnnotationSet set;
  set.m_dPixelX = 0.5;
  set.m_dPixelY = 0.25;
  const CAnnotation* const made =
      set.CreateAnnotation(ANN_TEXT, CPoint(3, 4), 0x00FF00, CSize(30, 20), ORIENTATION_QUARTER_TURN);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->m_pSet, &set);
  EXPECT_EQ(made->m_ptBase, CPoint(3, 4));
  EXPECT_EQ(made->m_crColor, 0x00FF00u);
  EXPECT_EQ(made->m_Orientation, ORIENTATION_QUARTER_TURN);
  EXPECT_EQ(made->m_dPixelX, 0.5);
  EXPECT_EQ(made->m_dPixelY, 0.25);
  EXPECT_EQ(set.m_sizeImg, CSize(30, 20));
  EXPECT_EQ(set.m_Orientation, ORIENTATION_QUARTER_TURN);
}

TEST(CreateAnnotation, TakesOverSizesWithoutAZeroOnly) {
  CAnnotationSet set;
  for (const CSize& size : {CSize(0, 0), CSize(5, 0), CSize(0, 5)}) {
    set.CreateAnnotation(ANN_TEXT, CPoint(0, 0), 0, size, ORIENTATION_AS_STORED);
    EXPECT_EQ(set.m_sizeImg, CSize(256, 256));
  }
  set.CreateAnnotation(ANN_OVAL, CPoint(0, 0), 0, CSize(-1, 5), ORIENTATION_HALF_TURN);
  EXPECT_EQ(set.m_sizeImg, CSize(-1, 5)) << "also for a kind without a class";
  EXPECT_EQ(set.m_Orientation, ORIENTATION_HALF_TURN);
}

TEST(CreateAnnotation, KeepsTheOrderOfCreation) {
  CAnnotationSet set;
  CAnnotation* const first = create(set, ANN_TEXT);
  CAnnotation* const second = create(set, ANN_RULER);
  CAnnotation* const third = create(set, ANN_ANGLE);
  EXPECT_THAT(annotationsOf(set), ElementsAre(first, second, third));
}

TEST(CreateAnnotation, NumbersFromOneOn) {
  CAnnotationSet set;
  for (int i = 1; i <= 12; ++i) EXPECT_EQ(create(set, ANN_TEXT)->m_nIndex, i);
}

TEST(CreateAnnotation, FillsTheFirstGapOfAnAscendingList) {
  CAnnotationSet set;
  for (int i = 0; i < 4; ++i) create(set, ANN_TEXT);
  set.DeleteAnnotation(annotationsOf(set)[1]);  // 1 3 4
  EXPECT_EQ(create(set, ANN_TEXT)->m_nIndex, 2);
}

TEST(CreateAnnotation, CountsWhatIsNotAboveTheCounter) {
  struct Case {
    std::vector<int> numbers;
    int next;
  };
  const Case cases[] = {
      {{2, 3}, 1},        // the first one ends the walk
      {{1, 1, 1}, 4},     // each increments
      {{0, -5}, 3},       // also those below the counter
      {{1, 3, 4, 2}, 2},  // 3 ends the walk, though 2 is taken
      {{3, 1, 2}, 1},    {{1, 2, 2, 5, 3}, 4},
  };
  for (const Case& c : cases) {
    CAnnotationSet set;
    for (const int number : c.numbers) create(set, ANN_TEXT)->m_nIndex = number;
    EXPECT_EQ(create(set, ANN_TEXT)->m_nIndex, c.next) << testing::PrintToString(c.numbers);
  }
}

TEST(DeleteAnnotation, RemovesTheOneGiven) {
  CAnnotationSet set;
  CAnnotation* const first = create(set, ANN_TEXT);
  CAnnotation* const second = create(set, ANN_TEXT);
  CAnnotation* const third = create(set, ANN_TEXT);
  set.DeleteAnnotation(second);
  EXPECT_THAT(annotationsOf(set), ElementsAre(first, third));
  set.DeleteAnnotation(first);
  set.DeleteAnnotation(third);
  EXPECT_TRUE(set.m_listAnnotations.IsEmpty());
}

TEST(DeleteAnnotation, IgnoresWhatIsNotInTheList) {
  CAnnotationSet set;
  CAnnotationSet other;
  create(set, ANN_TEXT);
  set.DeleteAnnotation(create(other, ANN_TEXT));
  set.DeleteAnnotation(nullptr);
  EXPECT_EQ(set.m_listAnnotations.GetCount(), 1);
  EXPECT_EQ(other.m_listAnnotations.GetCount(), 1);
}

TEST(DeleteAnnotations, RemovesAll) {
  CAnnotationSet set;
  for (int i = 0; i < 25; ++i) create(set, i % 2 == 0 ? ANN_TEXT : ANN_CALIB);
  set.DeleteAnnotations();
  EXPECT_TRUE(set.m_listAnnotations.IsEmpty());
  set.DeleteAnnotations();
  EXPECT_EQ(create(set, ANN_TEXT)->m_nIndex, 1);
}

TEST(DeleteAnnotations, TellsCalibrationsFromTheOthers) {
  for (const int bCalib : {1, -1}) {
    CAnnotationSet set;
    CAnnotation* const text = create(set, ANN_TEXT);
    create(set, ANN_CALIB);
    CAnnotation* const ruler = create(set, ANN_RULER);
    create(set, ANN_CALIB);
    set.DeleteAnnotations(bCalib);
    EXPECT_THAT(annotationsOf(set), ElementsAre(text, ruler));
  }
  CAnnotationSet set;
  CAnnotation* const calibration = create(set, ANN_CALIB);
  create(set, ANN_TEXT);
  create(set, ANN_RULER);
  set.DeleteAnnotations(0);
  EXPECT_THAT(annotationsOf(set), ElementsAre(calibration));
}

TEST(IsAnnotation, TellsCalibrationsFromTheOthers) {
  CAnnotationSet set;
  EXPECT_EQ(set.IsAnnotation(1), 0);
  EXPECT_EQ(set.IsAnnotation(0), 0);
  create(set, ANN_CALIB);
  EXPECT_EQ(set.IsAnnotation(1), 1);
  EXPECT_EQ(set.IsAnnotation(-1), 1);
  EXPECT_EQ(set.IsAnnotation(0), 0);
  CAnnotation* const ruler = create(set, ANN_RULER);
  EXPECT_EQ(set.IsAnnotation(0), 1);
  set.DeleteAnnotations(1);
  EXPECT_EQ(set.IsAnnotation(1), 0);
  EXPECT_THAT(annotationsOf(set), ElementsAre(ruler));
}

}  // namespace
