// The views of the controls that are little more than a text.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "windows/controls/simple_controls.h"
#include "windows/qt/qt_control.h"

namespace torvane {

/// A label's widget; one that shows a hand is a link, reached by Tab and pressed by Space or Enter.
class LabelWidget : public QLabel {
 public:
  LabelWidget(Label& model, QWidget* parent);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  Label& model_;
};

class QtLabel : public QtControl<ControlView, LabelWidget> {
 public:
  QtLabel(Label& model, QtPictures& pictures, QWidget& parent);
  void setMousePointer(MousePointer pointer) override;
  void update() override;

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
  QtLine(const Line& model, QtPictures& pictures, QWidget& parent)
      : QtControl(model, pictures, {}, model, &parent) {}
};

/// The dynamic property of a push button that Escape presses.
constexpr const char* kCancelProperty = "cancel";

class QtButton : public QtControl<ControlView, QPushButton> {
 public:
  QtButton(Button& model, QtPictures& pictures, QWidget& parent);
  void update() override;

 private:
  Button& model_;
};

class QtTextBox : public QtControl<ControlView, QPlainTextEdit> {
 public:
  QtTextBox(const TextBox& model, QtPictures& pictures, QWidget& parent);
  void update() override;

 private:
  const TextBox& model_;
};

}  // namespace torvane
