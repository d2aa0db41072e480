// The drawing goes to an image first, because only there can a box be combined with what it covers.
#include "windows/qt/qt_picture_box.h"

#include <QFontMetricsF>
#include <QImage>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionFrame>

namespace torvane {

QFont PictureBoxWidget::textFont() const {
  QFont own = font();
  own.setBold(model_.FontBold);
  return own;
}

bool PictureBoxWidget::isFresh() const {
  constexpr qreal kMillisecondsPerSecond = 1000;
  return sincePainted_.isValid() &&
         static_cast<qreal>(sincePainted_.elapsed()) * screen()->refreshRate() <
             kMillisecondsPerSecond;
}

void PictureBoxWidget::paintEvent(QPaintEvent*) {
  sincePainted_.start();
  const qreal ratio = devicePixelRatioF();
  QImage image(size() * ratio, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(ThemeColor(palette(), model_.BackColor));
  QPainter drawing(&image);
  pictures_.draw(drawing, model_.Steps(),
                 {palette(), textFont(), model_.BackColor, model_.ForeColor, model_.Mode});
  drawing.end();

  QPainter painter(this);
  painter.drawImage(0, 0, image);
  if (!model_.Bordered) return;
  QStyleOptionFrame frame;
  frame.initFrom(this);
  frame.lineWidth = 1;
  frame.state |= QStyle::State_Sunken;
  style()->drawPrimitive(QStyle::PE_Frame, &frame, &painter, this);
}

void QtPictureBox::refresh() {
  if (widget().isFresh()) {
    widget().update();
  } else {
    QtControl::refresh();
  }
}

float QtPictureBox::textWidth(const Text& text) const {
  return static_cast<float>(QFontMetricsF(widget().textFont()).horizontalAdvance(ToQString(text)));
}

float QtPictureBox::textHeight(const Text&) const {
  return static_cast<float>(QFontMetricsF(widget().textFont()).height());
}

}  // namespace torvane
