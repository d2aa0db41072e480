// Labels and buttons have a caption, which is what assistive technology reads; the control's name
// stands beside it as the description.
//
// A drawing goes to an image first, because only there can a box be combined with what it covers.
#include "windows/qt/simple_controls.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QStyleOptionFrame>
#include <QtMath>
#include <algorithm>

#include "windows/qt/drawing.h"

namespace torvane {
namespace {

QFont Scaled(QFont font, float scale, bool bold) {
  font.setBold(bold);
  if (font.pointSizeF() > 0) {
    font.setPointSizeF(font.pointSizeF() * scale);
  } else {
    font.setPixelSize(static_cast<int>(static_cast<float>(font.pixelSize()) * scale));
  }
  return font;
}

void NameByCaption(QWidget& widget, const Control& model, const Text& caption) {
  if (caption.empty()) return;
  widget.setAccessibleName(ToQString(caption));
  widget.setAccessibleDescription(ToQString(model.Name()));
}

}  // namespace

LabelWidget::LabelWidget(Label& model, WriteBack& writeBack, QWidget* parent)
    : QLabel(parent), model_(model), writeBack_(writeBack) {
  setTextFormat(Qt::PlainText);
}

void LabelWidget::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  // A retired widget has outlived the view that would hear it.
  const bool heard = themeChanged && !signalsBlocked();
  if (event->type() == QEvent::PaletteChange && heard) themeChanged();
}

void LabelWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) return;
  writeBack_.run([&model = model_] { model.Click(); });
}

void LabelWidget::keyPressEvent(QKeyEvent* event) {
  const bool press = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                     event->key() == Qt::Key_Enter;
  if (!press) return QLabel::keyPressEvent(event);
  writeBack_.run([&model = model_] { model.Click(); });
}

void LabelWidget::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (!hasFocus()) return;
  QStyleOptionFocusRect option;
  option.initFrom(this);
  option.rect.setWidth(std::min(width(), fontMetrics().horizontalAdvance(text()) + 2));
  QPainter painter(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

QtLabel::QtLabel(Label& model, const QtShared& shared, QWidget& parent)
    : QtControl(model, shared, {}, model, shared.writeBack, &parent), model_(model) {
  widget().themeChanged = [this] { QtLabel::modelChanged(); };
  QtLabel::setMousePointer(model.Pointer());
}

void QtLabel::setMousePointer(MousePointer pointer) {
  QtControl::setMousePointer(pointer);
  const bool link = pointer == MousePointer::Hand;
  widget().setFocusPolicy(link ? Qt::TabFocus : Qt::NoFocus);
  QtLabel::modelChanged();
}

void QtLabel::modelChanged() {
  LabelWidget& label = widget();
  const QPalette& theme = label.parentWidget()->palette();
  const bool link = model_.ForeColor == SystemColor::HotLight;
  // All other colours stay the theme's, also when it changes.
  QPalette own;
  own.setColor(QPalette::WindowText, link ? LinkColor(theme) : ThemeColor(theme, model_.ForeColor));
  label.setPalette(own);
  label.setFont(Scaled(label.parentWidget()->font(), model_.FontScale, model_.FontBold));
  label.setWordWrap(model_.WordWrap);
  label.setAlignment(Qt::AlignLeft | (model_.WordWrap ? Qt::AlignTop : Qt::AlignVCenter));
  label.setText(ToQString(model_.Caption()));
  NameByCaption(label, model_, model_.Caption());
}

PixelSize QtLabel::naturalSize(int width) const {
  const QSize size = widget().sizeHint();
  return model_.WordWrap ? PixelSize{0, widget().heightForWidth(width)}
                         : PixelSize{size.width(), size.height()};
}

void LineWidget::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), ThemeColor(palette(), model_.BorderColor));
}

QtButton::QtButton(Button& model, const QtShared& shared, QWidget& parent)
    : QtControl(model, shared, {}, &parent), model_(model) {
  QObject::connect(
      &widget(), &QPushButton::clicked, &widget(),
      [&model, &writeBack = shared.writeBack] { writeBack.run([&model] { model.Click(); }); });
  QtButton::modelChanged();
}

void QtButton::modelChanged() {
  widget().setText(CaptionText(model_.Caption()));
  widget().setDefault(model_.Default);
  widget().setProperty(kCancelProperty, static_cast<bool>(model_.Cancel));
  NameByCaption(widget(), model_, model_.Caption());
}

PixelSize QtButton::naturalSize(int /*width*/) const {
  const QSize size = widget().sizeHint();
  return {size.width(), size.height()};
}

QtTextBox::QtTextBox(const TextBox& model, const QtShared& shared, QWidget& parent)
    : QtControl(model, shared, {}, &parent), model_(model) {
  QPlainTextEdit& box = widget();
  box.setReadOnly(true);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  box.setLineWrapMode(QPlainTextEdit::NoWrap);
  box.setTabChangesFocus(true);
  QtTextBox::modelChanged();
}

void QtTextBox::modelChanged() {
  widget().setPlainText(
      ToQString(model_.Text()).replace(QLatin1String("\r\n"), QLatin1String("\n")));
}

PixelSize QtTextBox::naturalSize(int /*width*/) const {
  const QPlainTextEdit& box = widget();
  const QSize text = QFontMetrics(box.font()).size(Qt::TextExpandTabs, box.toPlainText());
  const int around = 2 * (box.frameWidth() + qCeil(box.document()->documentMargin()));
  return {text.width() + around + box.verticalScrollBar()->sizeHint().width(),
          text.height() + around};
}

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
  // The part of a pixel at the edge is the box's too.
  const QSize pixels(qCeil(width() * ratio), qCeil(height() * ratio));
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(ThemeColor(palette(), model_.BackColor));
  QPainter drawing(&image);
  DrawSteps(icons_, drawing, model_.Steps(),
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

void QtPictureBox::paintNow() {
  if (widget().isFresh()) {
    widget().update();
  } else {
    QtControl::paintNow();
  }
}

float QtPictureBox::textWidth(const Text& text) const {
  return static_cast<float>(QFontMetricsF(widget().textFont()).horizontalAdvance(ToQString(text)));
}

float QtPictureBox::textHeight(const Text&) const {
  return static_cast<float>(QFontMetricsF(widget().textFont()).height());
}

}  // namespace torvane
