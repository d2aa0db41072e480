// The view of a frame: an empty area that sees the mouse.
#pragma once

#include "windows/controls/simple_controls.h"
#include "windows/qt/control.h"

namespace torvane {

/// A frame's widget.
class FrameWidget : public QWidget {
 public:
  FrameWidget(Frame& model, QWidget* parent);

  /// Whether a button that was pressed here is still down.
  bool holdsMouse() const { return held_; }

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  using MouseEvent = Event<int, int, float, float>;
  void fire(const MouseEvent& target, int button, const QMouseEvent& event) const;

  Frame& model_;
  bool held_ = false;
};

class QtFrame : public QtControl<ControlView, FrameWidget> {
 public:
  QtFrame(Frame& model, const QtShared& shared, QWidget& parent)
      : QtControl(model, shared, {}, model, &parent) {}
  /// A frame that holds the mouse is hidden when it is let go: hiding it would take the mouse away.
  void setVisible(bool visible) override;
};

}  // namespace torvane
