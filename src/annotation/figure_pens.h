// The pens that every figure is drawn with. Private to this folder.
#pragma once

#include <memory>

#include "annotation/annotation.h"
#include "annotation/selected.h"

/// While it lives, the annotation's pen is selected: its colour's bright one in the alternate state, else one in
/// its colour.
class FigurePens {
 public:
  FigurePens(CDC* dc, const CAnnotation& annotation, double scale);

  CPen* Shadow() { return m_shadow.get(); }
  /// The pen of a handle box: bright in the state kind that stands for this handle.
  CPen* Handle(int stateKind) { return m_stateKind == stateKind ? &m_bright : &m_normal; }

 private:
  CPen m_normal;
  CPen m_bright;
  std::unique_ptr<CPen> m_shadow;
  int m_stateKind;
  Selected<CPen> m_selected;
};
