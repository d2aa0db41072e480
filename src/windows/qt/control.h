// What the views of all controls do alike: a widget in the form's client area, with a window
// record.
#pragma once

#include "windows/controls/control.h"
#include "windows/qt/shared.h"
#include "windows/qt/text.h"
#include "windows/qt/window.h"

namespace torvane {

/// The view of a control by a widget of class `Widget`. The widget outlives the view by what a
/// handler that is running may still need of it.
template <class View, class Widget>
class QtControl : public View {
 public:
  template <class... Arguments>
  QtControl(const Control& model, const QtShared& shared, QtWindow::Answer answer,
            Arguments&&... arguments)
      : shared_(shared),
        widget_(&MakeChild<Widget>(std::forward<Arguments>(arguments)...)),
        window_(*widget_, std::move(answer)) {
    const QString name = ToQString(model.Name());
    widget_->setObjectName(name);
    widget_->setAccessibleName(name);
    QtControl::place(model.Bounds());
    QtControl::setMousePointer(model.Pointer());
    widget_->setVisible(model.Visible());
  }
  ~QtControl() override { Retire(widget_); }
  QtControl(const QtControl&) = delete;
  QtControl& operator=(const QtControl&) = delete;

  HWND handle() const override { return window_.handle(); }
  PixelRect bounds() const override {
    const QRect rect = widget_->geometry();
    return {rect.left(), rect.top(), rect.width(), rect.height()};
  }
  void place(const PixelRect& bounds) override {
    widget_->setGeometry(bounds.left, bounds.top, bounds.width, bounds.height);
  }
  void setVisible(bool visible) override { widget_->setVisible(visible); }
  void setMousePointer(MousePointer pointer) override {
    if (pointer == MousePointer::Default) {
      widget_->unsetCursor();
    } else {
      widget_->setCursor(CursorOf(pointer));
    }
  }
  void setHint(const Text& hint) override { widget_->setAccessibleDescription(ToQString(hint)); }
  void bringToFront() override { widget_->raise(); }
  bool hasFocus() const override { return widget_->hasFocus(); }
  void takeFocus() override { widget_->setFocus(); }
  void modelChanged() override { widget_->update(); }
  void paintNow() override { PaintOnScreen(*widget_); }

  Widget& widget() const { return *widget_; }

 protected:
  const QtShared& shared() const { return shared_; }

 private:
  QtShared shared_;
  QPointer<Widget> widget_;
  QtWindow window_;
};

}  // namespace torvane
