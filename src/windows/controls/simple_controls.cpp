#include "windows/controls/simple_controls.h"

#include "windows/controls/form.h"

namespace torvane {

void Label::Caption(Text caption) {
  caption_ = std::move(caption);
  showModel();
}

void Button::Caption(Text caption) {
  caption_ = std::move(caption);
  showModel();
}

void TextBox::Text(torvane::Text text) {
  text_ = std::move(text);
  showModel();
}

void Panel::Text(torvane::Text text) {
  text_ = std::move(text);
  bar_.showModel();
}

StatusBar::StatusBar(Form& form, Text name, const std::vector<int>& minWidths)
    : ControlWithView(form, std::move(name)) {
  form.statusBar_ = this;
  panels_.reserve(minWidths.size());
  for (const int width : minWidths) panels_.emplace_back(*this, width);
}

}  // namespace torvane
