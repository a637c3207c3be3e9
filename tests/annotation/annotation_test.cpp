#include "annotation/annotation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>
#include <vector>

#include "annotation/report_builder.h"

namespace {

using testing::ElementsAre;

// Shows what the base class does by itself.
class Probe : public CAnnotation {
 public:
  void PaintAnnotation(CDC*, double) override {}
  CPoint GetIndexCenter() override { return {0, 0}; }
  void SetIndexCenter(CPoint pt) override { note("index", pt); }
  CPoint GetValueCenter() override { return {0, 0}; }
  void SetValueCenter(CPoint pt) override { note("value", pt); }
  void CountValue() override { calls.emplace_back("count"); }
  ANN_MODE GetAnnMode() override { return ANN_OVAL; }
  int SetAnnotationReport(unsigned int version, char* text, int) override {
    rest = SetAnnotationReportBase(version, text);
    return rest != nullptr;
  }
  using CAnnotation::CalcNewAnnotation;

  bool read(unsigned int version, std::string line) {
    const bool ok = SetAnnotationReport(version, line.data(), 0) != 0;
    restText = ok ? rest : "(null)";
    return ok;
  }

  std::vector<std::string> calls;
  std::string restText;

 private:
  void note(const std::string& what, CPoint pt) {
    calls.push_back(what + " " + std::to_string(pt.x) + " " + std::to_string(pt.y));
  }
  char* rest = nullptr;
};

static_assert(std::is_abstract_v<CAnnotation> && std::has_virtual_destructor_v<CAnnotation>);

TEST(Annotation, BeginsWithoutLabelsAndUnselected) {
  const Probe probe;
  EXPECT_EQ(probe.m_bShowIndex, 0);
  EXPECT_EQ(probe.m_bShowValue, 0);
  EXPECT_EQ(probe.m_bSelected, 0);
  EXPECT_EQ(probe.m_nState, 0);
  EXPECT_EQ(probe.m_dValue, 0.0);
  EXPECT_STREQ(probe.m_strValue, "");
}

TEST(Annotation, TakesItsPlaceFromInitialize) {
  CAnnotationSet set;
  Probe probe;
  probe.Initialize(&set, 4, CPoint(1, 2), 0x123456, ORIENTATION_HALF_TURN);
  EXPECT_EQ(probe.m_pSet, &set);
  EXPECT_EQ(probe.m_nIndex, 4);
  EXPECT_EQ(probe.m_ptBase, CPoint(1, 2));
  EXPECT_EQ(probe.m_crColor, 0x123456u);
  EXPECT_EQ(probe.GetPenColor(), 0x123456u);
  EXPECT_EQ(probe.m_Orientation, ORIENTATION_HALF_TURN);
}

TEST(AnnotationBase, ReadsTheCommonFields) {
  Probe probe;
  probe.m_Orientation = ORIENTATION_MIRROR_LEFT_RIGHT;
  ASSERT_TRUE(probe.read(0, "7 ff8000 10 20 2 -1 30 40 50 60 | rest of it"));
  EXPECT_EQ(probe.m_nIndex, 7);
  EXPECT_EQ(probe.m_crColor, 0xFF8000u);
  EXPECT_EQ(probe.m_ptBase, CPoint(10, 20));
  EXPECT_EQ(probe.m_bShowIndex, 1);
  EXPECT_EQ(probe.m_bShowValue, 1);
  EXPECT_EQ(probe.m_ptIndex, CPoint(30, 40));
  EXPECT_EQ(probe.m_ptValue, CPoint(50, 60));
  EXPECT_EQ(probe.m_Orientation, ORIENTATION_MIRROR_LEFT_RIGHT) << "version 0 keeps it";
  EXPECT_EQ(probe.restText, "rest of it");
}

TEST(AnnotationBase, ReadsTheFlagsIndexFirst) {
  Probe probe;
  ASSERT_TRUE(probe.read(0, "7 0 0 0 1 0 0 0 0 0 | x"));
  EXPECT_EQ(probe.m_bShowIndex, 1);
  EXPECT_EQ(probe.m_bShowValue, 0);
}

TEST(AnnotationBase, ReadsAnOrientationInLaterVersions) {
  for (const unsigned int version : {1u, 2u, UINT_MAX}) {
    Probe probe;
    ASSERT_TRUE(probe.read(version, "7 ff8000 10 20 1 1 30 40 50 60 5 | x"));
    EXPECT_EQ(probe.m_Orientation, ORIENTATION_OTHER_DIAGONAL);
    EXPECT_EQ(probe.restText, "x");
    EXPECT_FALSE(probe.read(version, ei4::test::commonFields(0) + " x y"))
        << "the bar is read as the orientation, and x is no separator";
  }
  Probe probe;
  EXPECT_FALSE(probe.read(0, ei4::test::commonFields(1) + " x"))
      << "the orientation is read as the separator";
}

TEST(AnnotationBase, NeedsAllWordsAndTheSeparator) {
  for (const int version : {0, 1}) {
    const std::vector<std::string> words = ei4::test::wordsOf(ei4::test::commonFields(version));
    std::string line;
    for (const std::string& word : words) {
      Probe probe;
      EXPECT_FALSE(probe.read(static_cast<unsigned int>(version), line)) << line;
      const bool lacksAField = word != "|";
      EXPECT_EQ(probe.read(static_cast<unsigned int>(version), line + "| x"), !lacksAField) << line;
      if (!lacksAField) continue;
      EXPECT_EQ(probe.m_nIndex, 0) << "nothing is stored: " << line;
      EXPECT_EQ(probe.m_ptBase, CPoint(0, 0)) << line;
      line += word + " ";
    }
  }
  Probe probe;
  EXPECT_EQ(probe.SetAnnotationReport(0, nullptr, 1), 0);
}

TEST(AnnotationBase, StoresNothingInFrontOfAnotherSeparator) {
  Probe probe;
  EXPECT_FALSE(probe.read(0, "7 ff8000 10 20 1 1 30 40 50 60 / x"));
  EXPECT_FALSE(probe.read(0, "7 ff8000 10 20 1 1 30 40 50 60 x| y"));
  EXPECT_EQ(probe.m_nIndex, 0);
  EXPECT_EQ(probe.m_crColor, 0u);
  EXPECT_EQ(probe.m_bShowIndex, 0);
}

TEST(AnnotationBase, SkipsTheSeparatorAsAWholeWord) {
  Probe probe;
  ASSERT_TRUE(probe.read(0, "7 ff8000 10 20 1 1 30 40 50 60 |12 34"));
  EXPECT_EQ(probe.restText, "34");
}

TEST(AnnotationBase, AnswersNullWithNothingBehindTheSeparator) {
  Probe probe;
  EXPECT_FALSE(probe.read(0, "7 ff8000 10 20 1 1 30 40 50 60 | \r\n"));
}

TEST(AnnotationBase, GoesOnOverLineEnds) {
  Probe probe;
  ASSERT_TRUE(probe.read(0, "7\nff8000\r\n10 20\t1 1\n\n30 40 50\n60\n|\nx"));
  EXPECT_EQ(probe.m_ptValue, CPoint(50, 60));
  EXPECT_EQ(probe.restText, "x");
}

TEST(AnnotationBase, ReadsNumbersThatAreNoneAsZero) {
  Probe probe;
  ASSERT_TRUE(probe.read(0, "a #ff8000 b c d e f g h i | x"));
  EXPECT_EQ(probe.m_nIndex, 0);
  EXPECT_EQ(probe.m_crColor, 0xFF8000u) << "what is no digit is passed over in a colour";
  EXPECT_EQ(probe.m_bShowValue, 0);
}

TEST(CalcNewAnnotation, PlacesTheLabelsThenMeasures) {
  Probe probe;
  ASSERT_TRUE(probe.read(0, "7 0 0 0 0 0 30 40 50 60 | x"));
  probe.CalcNewAnnotation(1);
  EXPECT_THAT(probe.calls, ElementsAre("index 30 40", "value 50 60", "count"));
}

TEST(CalcNewAnnotation, MeasuresOnlyWhenAsked) {
  Probe probe;
  probe.CalcNewAnnotation(0);
  EXPECT_THAT(probe.calls, ElementsAre("index 0 0", "value 0 0"));
}

// One line of each kind; the points are so that no reference point of a label is (0, 0).
const std::string kLines[] = {
    ei4::test::annotationLine("ruler", "100 120 12.5"),
    ei4::test::annotationLine("calib", "100 120 12.5"),
    ei4::test::annotationLine("angle", "100 120 -7 31 45"),
    ei4::test::annotationLine("cobangle_x", "1 2 3 4 5 6 12"),
    ei4::test::annotationLine("oval", "100 120 a"),
    ei4::test::annotationLine("houns", "100 120 a 5"),
    ei4::test::annotationLine("text", "0 a"),
    ei4::test::annotationLine("spinelabel_x", "0 1 2 3 L5"),
    ei4::test::annotationLine("pointer", "1 2 a"),
    ei4::test::annotationLine("free", "2 1 2 3 4 a"),
    ei4::test::annotationLine("obm_gsd_x", "100 120 a"),
    ei4::test::annotationLine("obm_crl_x", "100 120 a"),
    ei4::test::annotationLine("obm_bpd_x", "100 120 a"),
    ei4::test::annotationLine("obm_fl_x", "100 120 a"),
    ei4::test::annotationLine("obm_hc_x", "100 120 a"),
    ei4::test::annotationLine("obm_ac_x", "100 120 a"),
};

class EveryKind : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Annotations, EveryKind, testing::ValuesIn(kLines));

TEST_P(EveryKind, PutsItsLabelsWhereTheReportSays) {
  const ei4::test::OneLine one(GetParam());
  auto* const annotation = one.as<CAnnotation>();
  ASSERT_NE(annotation, nullptr);
  EXPECT_EQ(annotation->GetIndexCenter(), ei4::test::kIndexPoint);
  EXPECT_EQ(annotation->GetValueCenter(), ei4::test::kValuePoint);
}

TEST_P(EveryKind, StoresTheCommonFields) {
  const ei4::test::OneLine one(GetParam());
  auto* const annotation = one.as<CAnnotation>();
  ASSERT_NE(annotation, nullptr);
  EXPECT_EQ(annotation->m_nIndex, ei4::test::kIndex);
  EXPECT_EQ(annotation->m_crColor, ei4::test::kColor);
  EXPECT_EQ(annotation->m_ptBase, ei4::test::kBase);
  EXPECT_EQ(annotation->m_bShowIndex, 1);
  EXPECT_EQ(annotation->m_bShowValue, 1);
}

TEST_P(EveryKind, MovesItsLabelsWithItsBase) {
  const ei4::test::OneLine one(GetParam());
  auto* const annotation = one.as<CAnnotation>();
  ASSERT_NE(annotation, nullptr);
  const bool valueHangsOnTheArms = annotation->GetAnnMode() == ANN_ANGLE;
  annotation->m_ptBase.Offset(5, -3);
  EXPECT_EQ(annotation->GetIndexCenter(), ei4::test::kIndexPoint + CSize(5, -3));
  EXPECT_EQ(annotation->GetValueCenter(),
            valueHangsOnTheArms ? ei4::test::kValuePoint : ei4::test::kValuePoint + CSize(5, -3));
}

TEST_P(EveryKind, GivesLabelPointsBackAtTheEndsOfInt) {
  const ei4::test::OneLine one(GetParam());
  auto* const annotation = one.as<CAnnotation>();
  ASSERT_NE(annotation, nullptr);
  const CPoint corners[] = {
      {INT_MIN, INT_MIN}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}, {INT_MAX, INT_MAX}, {0, 0}, {-1, 1}};
  for (const CPoint& base : corners) {
    annotation->m_ptBase = base;
    for (const CPoint& label : corners) {
      annotation->SetIndexCenter(label);
      EXPECT_EQ(annotation->GetIndexCenter(), label);
      annotation->SetValueCenter(label);
      EXPECT_EQ(annotation->GetValueCenter(), label);
    }
  }
}

TEST_P(EveryKind, NeedsEachOfItsMandatoryWords) {
  // An optional value: of the pointer alone, in these lines.
  const std::size_t optionalWords = GetParam().starts_with("pointer") ? 1 : 0;
  ei4::test::expectAllWordsNeeded(GetParam(), optionalWords);
}

TEST_P(EveryKind, MayBreakItsLineAnywhere) {
  std::string broken = GetParam();
  for (char& c : broken) {
    if (c == ' ' && &c > broken.data() + broken.find(' ')) c = '\n';
  }
  EXPECT_NE(ei4::test::OneLine(broken).as<CAnnotation>(), nullptr);
}

}  // namespace
