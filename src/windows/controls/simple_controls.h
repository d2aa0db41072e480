// The controls that are little more than a text: label, line, button, text box, frame, status bar.
#pragma once

#include <vector>

#include "windows/controls/control.h"
#include "windows/controls/event.h"

namespace torvane {

/// A text that can be clicked.
class Label : public ControlWithView<ControlView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  const Text& Caption() const { return caption_; }
  void Caption(Text caption);

  Viewed<SystemColor> ForeColor{*this, SystemColor::ButtonText};
  Viewed<bool> FontBold{*this, false};
  /// Size relative to the form's font.
  Viewed<float> FontScale{*this, 1};
  Viewed<bool> WordWrap{*this, false};

  Event<> Click;

 private:
  Text caption_;
};

/// A straight horizontal line that fills its bounds.
class Line : public ControlWithView<ControlView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  Viewed<SystemColor> BorderColor{*this, SystemColor::ButtonShadow};
};

/// A push button.
class Button : public ControlWithView<ControlView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  const Text& Caption() const { return caption_; }
  void Caption(Text caption);

  /// Enter presses it, wherever the focus is.
  Viewed<bool> Default{*this, false};
  /// Escape presses it.
  Viewed<bool> Cancel{*this, false};

  Event<> Click;

 private:
  Text caption_;
};

/// A read-only text of many lines in a fixed-width font, with scroll bars where they are needed.
class TextBox : public ControlWithView<ControlView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  /// Lines end in CR LF.
  const ::torvane::Text& Text() const { return text_; }
  void Text(::torvane::Text text);

 private:
  ::torvane::Text text_;
};

/// Mouse buttons as the frame's events give them.
constexpr int kLeftButton = 1;
constexpr int kRightButton = 2;

/// An empty area that sees the mouse. Positions in its events are in twips from its own corner; a
/// pressed button keeps the mouse with it until it is released.
class Frame : public ControlWithView<ControlView> {
 public:
  using ControlWithView::ControlWithView;
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  Viewed<SystemColor> BackColor{*this, SystemColor::ButtonFace};

  /// Button, Shift, x, y.
  Event<int, int, float, float> MouseDown;
  Event<int, int, float, float> MouseMove;
  Event<int, int, float, float> MouseUp;
};

/// A panel of a status bar.
class Panel {
 public:
  Panel(const StatusBar& bar, int minWidth) : bar_(bar), minWidth_(minWidth) {}
  const ::torvane::Text& Text() const { return text_; }
  void Text(::torvane::Text text);
  /// Width in pixels at 96 dots an inch that the panel has at least, and more where its text needs
  /// it; 0 for the panel that takes the room that the others leave.
  int MinWidth() const { return minWidth_; }

 private:
  const StatusBar& bar_;
  int minWidth_;
  ::torvane::Text text_;
};

/// The status bar across the bottom of its form.
class StatusBar : public ControlWithView<ControlView> {
 public:
  /// `minWidths` has the MinWidth of each panel, from the left.
  StatusBar(Form& form, Text name, const std::vector<int>& minWidths);
  void accept(ControlVisitor& visitor) override { visitor.visit(*this); }

  /// Counted from 1.
  Panel& Panels(int index) { return panels_.at(static_cast<std::size_t>(index - 1)); }
  const std::vector<Panel>& AllPanels() const { return panels_; }

 private:
  friend class Panel;
  std::vector<Panel> panels_;
};

}  // namespace torvane
