// Selects something into a drawing context for a while. Private to this folder.
#pragma once

#include "draw/cdc.h"

/// A pen, brush or font that is selected while this lives; then what was selected before is selected again.
template <class Tool>
class Selected {
 public:
  /// The context, never null, and the tool, null only for a brush, outlive this.
  Selected(CDC* dc, Tool* tool) : m_dc(dc), m_previous(dc->SelectObject(tool)) {}
  ~Selected() { m_dc->SelectObject(m_previous); }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;

 private:
  CDC* m_dc;
  Tool* m_previous;
};

/// The same for the colour of text, a packed value.
class SelectedTextColor {
 public:
  SelectedTextColor(CDC* dc, unsigned int color) : m_dc(dc), m_previous(dc->SetTextColor(color)) {}
  ~SelectedTextColor() { m_dc->SetTextColor(m_previous); }
  SelectedTextColor(const SelectedTextColor&) = delete;
  SelectedTextColor& operator=(const SelectedTextColor&) = delete;

 private:
  CDC* m_dc;
  unsigned int m_previous;
};
