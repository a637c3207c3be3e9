// Keeps the font of text from being taken for a file. Private to this folder.
#pragma once

#include <magick/MagickCore.h>

#include <utility>

namespace ei4 {

/// While it lives, `info` asks for its font in a way that no file in the working directory can answer:
/// MagickCore opens a file of the font's name, where there is one, before it looks the name up. In that case
/// the name is taken for a family's, which it looks up at once.
class TextFace {
 public:
  explicit TextFace(DrawInfo& info) : m_info(info), m_font(info.font), m_family(info.family) {
    if (info.font == nullptr || IsPathAccessible(info.font) == MagickFalse) return;
    info.family = std::exchange(info.font, nullptr);
  }
  ~TextFace() {
    m_info.font = m_font;
    m_info.family = m_family;
  }
  TextFace(const TextFace&) = delete;
  TextFace& operator=(const TextFace&) = delete;

 private:
  DrawInfo& m_info;
  char* m_font;
  char* m_family;
};

}  // namespace ei4
