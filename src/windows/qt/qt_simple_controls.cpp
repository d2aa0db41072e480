// Labels and buttons have a caption, which is what assistive technology reads; the control's name
// stands beside it as the description.
#include "windows/qt/qt_simple_controls.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <algorithm>

#include "windows/qt/qt_write_back.h"

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

LabelWidget::LabelWidget(Label& model, QWidget* parent) : QLabel(parent), model_(model) {
  setTextFormat(Qt::PlainText);
}

void LabelWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) return;
  RunCommand([&model = model_] { model.Click(); });
}

void LabelWidget::keyPressEvent(QKeyEvent* event) {
  const bool press = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                     event->key() == Qt::Key_Enter;
  if (!press) return QLabel::keyPressEvent(event);
  RunCommand([&model = model_] { model.Click(); });
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

QtLabel::QtLabel(Label& model, QtPictures& pictures, QWidget& parent)
    : QtControl(model, pictures, {}, model, &parent), model_(model) {
  QtLabel::setMousePointer(model.Pointer());
}

void QtLabel::setMousePointer(MousePointer pointer) {
  QtControl::setMousePointer(pointer);
  const bool link = pointer == MousePointer::Hand;
  widget().setFocusPolicy(link ? Qt::TabFocus : Qt::NoFocus);
  QtLabel::update();
}

void QtLabel::update() {
  LabelWidget& label = widget();
  label.setForegroundRole(ThemeRole(model_.ForeColor));
  label.setFont(Scaled(label.parentWidget()->font(), model_.FontScale, model_.FontBold));
  label.setWordWrap(model_.WordWrap);
  label.setAlignment(Qt::AlignLeft | (model_.WordWrap ? Qt::AlignTop : Qt::AlignVCenter));
  label.setText(ToQString(model_.Caption()));
  NameByCaption(label, model_, model_.Caption());
}

void LineWidget::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), ThemeColor(palette(), model_.BorderColor));
}

QtButton::QtButton(Button& model, QtPictures& pictures, QWidget& parent)
    : QtControl(model, pictures, {}, &parent), model_(model) {
  QObject::connect(&widget(), &QPushButton::clicked, &widget(),
                   [&model] { RunCommand([&model] { model.Click(); }); });
  QtButton::update();
}

void QtButton::update() {
  widget().setText(CaptionText(model_.Caption()));
  widget().setDefault(model_.Default);
  widget().setProperty(kCancelProperty, model_.Cancel);
  NameByCaption(widget(), model_, model_.Caption());
}

QtTextBox::QtTextBox(const TextBox& model, QtPictures& pictures, QWidget& parent)
    : QtControl(model, pictures, {}, &parent), model_(model) {
  QPlainTextEdit& box = widget();
  box.setReadOnly(true);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  box.setLineWrapMode(QPlainTextEdit::NoWrap);
  box.setTabChangesFocus(true);
  QtTextBox::update();
}

void QtTextBox::update() {
  widget().setPlainText(
      ToQString(model_.Text()).replace(QLatin1String("\r\n"), QLatin1String("\n")));
}

}  // namespace torvane
