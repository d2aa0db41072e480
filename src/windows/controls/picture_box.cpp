#include "windows/controls/picture_box.h"

namespace torvane {

float PictureBox::ScaleWidth() const {
  return scaleWidth_ > 0 ? scaleWidth_ : static_cast<float>(Width());
}

void PictureBox::ScaleWidth(float units) {
  scaleWidth_ = units;
}

float PictureBox::Pixels(float units) const {
  return units * static_cast<float>(Width()) / ScaleWidth();
}

float PictureBox::TextWidth(const Text& text) const {
  return view() ? view()->textWidth(text) * ScaleWidth() / static_cast<float>(Width()) : 0;
}

float PictureBox::TextHeight(const Text& text) const {
  return view() ? view()->textHeight(text) : 0;
}

void PictureBox::Cls() {
  steps_.clear();
  showModel();
}

template <class Step>
void PictureBox::Record(Step step) {
  steps_.emplace_back(std::in_place_type<Step>, std::move(step));
  showModel();
}

void PictureBox::Print(Text text) {
  Record(DrawCaption{Pixels(CurrentX), CurrentY, std::move(text)});
}

void PictureBox::FillBox(float left, float top, float right, float bottom) {
  Record(DrawBox{Pixels(left), top, Pixels(right) - Pixels(left), bottom - top});
}

void PictureBox::PaintShellIcon(int number, int left, int top) {
  Record(DrawShellIcon{number, left, top});
}

void PictureBox::PaintResourceIcon(int id, const PixelRect& place) {
  Record(DrawResourceIcon{id, place});
}

}  // namespace torvane
