#include "annotation/figure_pens.h"

#include "annotation/paint_style.h"

FigurePens::FigurePens(CDC* dc, const CAnnotation& annotation, double scale)
    : m_normal(0, GetLineWidth(1, scale), annotation.GetPenColor()),
      m_bright(0, GetLineWidth(1, scale), GetBrightColor(annotation.GetPenColor())),
      m_shadow(annotation.CreateShadowPen(scale, annotation.GetPenColor())),
      m_stateKind(annotation.m_nStateKind),
      m_selected(dc, annotation.IsAlternate() ? &m_bright : &m_normal) {}
