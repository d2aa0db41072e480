// The views of the controls without parts: labels, lines, buttons, texts, drawings.
#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <functional>

#include "windows/controls/picture_box.h"
#include "windows/controls/simple_controls.h"
#include "windows/qt/control.h"

namespace torvane {

/// A label's widget; one that shows a hand is a link, reached by Tab and pressed by Space or Enter.
class LabelWidget : public QLabel {
 public:
  LabelWidget(Label& model, WriteBack& writeBack, QWidget* parent);

  std::function<void()> themeChanged;

 protected:
  void changeEvent(QEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  Label& model_;
  WriteBack& writeBack_;
};

class QtLabel : public QtControl<ControlView, LabelWidget> {
 public:
  QtLabel(Label& model, const QtShared& shared, QWidget& parent);
  void setMousePointer(MousePointer pointer) override;
  void modelChanged() override;
  PixelSize naturalSize(int width) const override;

 private:
  Label& model_;
};

/// A line's widget: a filled rectangle.
class LineWidget : public QWidget {
 public:
  LineWidget(const Line& model, QWidget* parent) : QWidget(parent), model_(model) {}

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Line& model_;
};

class QtLine : public QtControl<ControlView, LineWidget> {
 public:
  QtLine(const Line& model, const QtShared& shared, QWidget& parent)
      : QtControl(model, shared, {}, model, &parent) {}
};

/// The dynamic property of a push button that Escape presses.
constexpr const char* kCancelProperty = "cancel";

class QtButton : public QtControl<ControlView, QPushButton> {
 public:
  QtButton(Button& model, const QtShared& shared, QWidget& parent);
  void modelChanged() override;
  PixelSize naturalSize(int width) const override;

 private:
  Button& model_;
};

class QtTextBox : public QtControl<ControlView, QPlainTextEdit> {
 public:
  QtTextBox(const TextBox& model, const QtShared& shared, QWidget& parent);
  void modelChanged() override;
  PixelSize naturalSize(int width) const override;

 private:
  const TextBox& model_;
};

/// A picture box's widget.
class PictureBoxWidget : public QWidget {
 public:
  PictureBoxWidget(const PictureBox& model, QtIcons& icons, QWidget* parent)
      : QWidget(parent), model_(model), icons_(icons) {
    setAttribute(Qt::WA_OpaquePaintEvent);
  }

  QFont textFont() const;
  /// Whether the screen hasn't come round to another frame since this was last painted.
  bool isFresh() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const PictureBox& model_;
  QtIcons& icons_;
  QElapsedTimer sincePainted_;
};

class QtPictureBox : public QtControl<PictureBoxView, PictureBoxWidget> {
 public:
  QtPictureBox(const PictureBox& model, const QtShared& shared, QWidget& parent)
      : QtControl(model, shared, {}, model, shared.icons, &parent) {}
  float textWidth(const Text& text) const override;
  float textHeight(const Text& text) const override;
  /// Paints at once, but no more often than the screen shows it: that would only hold up the work
  /// whose progress is drawn.
  void paintNow() override;
};

}  // namespace torvane
