// A box to draw in: icons, a line of text, a bar.
#pragma once

#include "windows/controls/picture.h"

namespace torvane {

/// How a box combines with the pixels under it.
enum class DrawMode {
  NotXorPen = 10,  ///< not (pen xor pixel): the pen's colour on white, inverted where there is text
  CopyPen = 13,
};

/// What a picture box asks of its view.
class PictureBoxView : public ControlView {
 public:
  /// Size of one line of text in the box's font, in pixels.
  virtual float textWidth(const Text& text) const = 0;
  virtual float textHeight(const Text& text) const = 0;
};

/// The picture box. What is drawn stays until Cls().
class PictureBox : public ControlWithView<PictureBoxView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  Viewed<SystemColor> BackColor{*this, SystemColor::ButtonFace};
  Viewed<SystemColor> ForeColor{*this, SystemColor::WindowText};
  Viewed<bool> FontBold{*this, false};
  Viewed<DrawMode> Mode{*this, DrawMode::CopyPen};
  /// Whether the box has a sunken edge.
  Viewed<bool> Bordered{*this, false};
  /// Where Print() begins, in scale units.
  float CurrentX = 0;
  float CurrentY = 0;

  /// The width that counts as the whole box: pixels until it is set. Height is always in pixels.
  float ScaleWidth() const;
  void ScaleWidth(float units);
  float ScaleHeight() const { return static_cast<float>(Height()); }
  /// In scale units; 0 without a view.
  float TextWidth(const Text& text) const;
  float TextHeight(const Text& text) const;

  void Cls();
  void Print(Text text);
  /// A filled box from corner to corner, in scale units.
  void FillBox(float left, float top, float right, float bottom);
  void PaintShellIcon(int number, int left, int top);
  void PaintResourceIcon(int id, const PixelRect& place);

  /// What stands in the box.
  Picture Image() const { return {Width(), Height(), steps_}; }
  const std::vector<DrawStep>& Steps() const { return steps_; }

 private:
  template <class Step>
  void Record(Step step);
  float Pixels(float units) const;

  std::vector<DrawStep> steps_;
  float scaleWidth_ = 0;
};

}  // namespace torvane
