// The view of a picture box: carries out what the box has recorded.
#pragma once

#include <QElapsedTimer>

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
  /// Whether the screen hasn't come round to another frame since this was last painted.
  bool isFresh() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const PictureBox& model_;
  QtPictures& pictures_;
  QElapsedTimer sincePainted_;
};

class QtPictureBox : public QtControl<PictureBoxView, PictureBoxWidget> {
 public:
  QtPictureBox(const PictureBox& model, QtPictures& pictures, QWidget& parent)
      : QtControl(model, pictures, {}, model, pictures, &parent) {}
  float textWidth(const Text& text) const override;
  float textHeight(const Text& text) const override;
  /// Paints at once, but no more often than the screen shows it: that would only hold up the work
  /// whose progress is drawn.
  void refresh() override;
};

}  // namespace torvane
