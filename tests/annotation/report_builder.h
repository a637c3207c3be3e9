// Report texts, and what comes of them.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "annotation/annotation_set.h"

namespace ei4::test {

/// The values of the fields that all annotation lines share. Each differs from what a new annotation holds.
inline constexpr int kIndex = 7;
inline constexpr unsigned int kColor = 0xFF8000;
inline constexpr CPoint kBase{10, 20};
inline constexpr CPoint kIndexPoint{30, 40};
inline constexpr CPoint kValuePoint{50, 60};
inline constexpr int kOrientation = 3;  ///< of versions from 1 on

/// "7 ff8000 10 20 1 1 30 40 50 60 |", for versions from 1 on with the orientation in front of the bar.
inline std::string commonFields(int version) {
  return std::string("7 ff8000 10 20 1 1 30 40 50 60 ") + (version != 0 ? "3 |" : "|");
}

/// An annotation line with the common fields. Keywords that end in "_x" have version 1, others version 0.
inline std::string annotationLine(const std::string& keyword, const std::string& fields) {
  const bool isExtended = keyword.ends_with("_x");
  return keyword + " " + commonFields(isExtended ? 1 : 0) + " " + fields;
}

inline std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : line + " ") {
    if (c != ' ') {
      word += c;
    } else if (!word.empty()) {
      words.push_back(word);
      word.clear();
    }
  }
  return words;
}

/// A report, line by line.
class Report {
 public:
  Report() = default;
  Report(std::initializer_list<std::string> lines) {
    for (const std::string& line : lines) add(line);
  }

  Report& add(const std::string& line) {
    m_text += line + "\n";
    return *this;
  }
  const std::string& text() const { return m_text; }

  /// What the set answers.
  int readInto(CAnnotationSet& set, CSize sizeImg = {512, 400}, int nCalc = 1) const {
    std::string copy = m_text;
    const int answer = set.SetAnnotationSetReport(copy.data(), sizeImg, nCalc);
    EXPECT_EQ(copy, m_text) << "the text is only read";
    return answer;
  }

 private:
  std::string m_text;
};

/// Begins a report in which annotations count.
inline Report viewed() { return {"sized 512 400 0 0", "light 400 40 0 0"}; }

inline std::vector<CAnnotation*> annotationsOf(const CAnnotationSet& set) {
  std::vector<CAnnotation*> all;
  for (POSITION at = set.m_listAnnotations.GetHeadPosition(); at != nullptr;)
    all.push_back(set.m_listAnnotations.GetNext(at));
  return all;
}

/// A set that holds what came of one annotation line.
class OneLine {
 public:
  explicit OneLine(const std::string& line, int nCalc = 1) : OneLine(viewed(), line, nCalc) {}
  OneLine(Report before, const std::string& line, int nCalc = 1) {
    before.add(line).readInto(m_set, {512, 400}, nCalc);
  }

  CAnnotationSet& set() { return m_set; }
  /// The annotation as the class asked for; null when there is none, more than one, or one of another class.
  template <class Kind>
  Kind* as() const {
    const std::vector<CAnnotation*> all = annotationsOf(m_set);
    return all.size() == 1 ? dynamic_cast<Kind*>(all.front()) : nullptr;
  }
  bool leavesNothing() const { return m_set.m_listAnnotations.IsEmpty(); }

 private:
  CAnnotationSet m_set;
};

/// Cuts the line behind each of its words: it must leave an annotation when no more than the optional words are
/// missing, and nothing otherwise.
inline void expectAllWordsNeeded(const std::string& line, std::size_t optionalWords = 0) {
  const std::vector<std::string> words = wordsOf(line);
  std::string cut;
  for (std::size_t n = 0; n < words.size(); ++n) {
    cut += words[n] + " ";
    const bool isComplete = n + 1 + optionalWords >= words.size();
    EXPECT_EQ(OneLine(cut).leavesNothing(), !isComplete) << cut;
  }
}

}  // namespace ei4::test
