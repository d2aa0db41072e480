// The view of a picture box: carries out what the box has recorded.
#pragma once

#include "windows/qt/qt_control.h"

namespace torvane {

/// A picture box's widget.
class PictureBoxWidget : public QWidget {
 public:
  PictureBoxWidget(const PictureBox& model, QtPictures& pictures, QWidget* parent)
      : QWidget(parent), model_(model), pictures_(pictures) {
    setAttribute(Qt::WA_OpaquePaintEvent);
  }

  QFont textFont() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const PictureBox& model_;
  QtPictures& pictures_;
};

class QtPictureBox : public QtControl<PictureBoxView, PictureBoxWidget> {
 public:
  QtPictureBox(const PictureBox& model, QtPictures& pictures, QWidget& parent)
      : QtControl(model, pictures, {}, model, pictures, &parent) {}
  float textWidth(const Text& text) const override;
  float textHeight(const Text& text) const override;
};

}  // namespace torvane
