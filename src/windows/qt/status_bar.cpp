#include "windows/qt/status_bar.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <numeric>

namespace torvane {
namespace {

constexpr int kMinHeight = 20;
constexpr int kMargin = 5;
constexpr int kGap = 2;

}  // namespace

PanelWidget::PanelWidget(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setContentsMargins(kMargin, 0, kMargin, 0);
}

void PanelWidget::showText(const QString& text, const QString& hint) {
  if (text == text_ && hint == hint_) return;
  text_ = text;
  hint_ = hint;
  setAccessibleName(text);
  elide();
}

int PanelWidget::wantedWidth() const {
  return fontMetrics().horizontalAdvance(text_) + 2 * kMargin + 1;
}

void PanelWidget::elide() {
  const QString shown = fontMetrics().elidedText(text_, Qt::ElideRight, width() - 2 * kMargin);
  setText(shown);
  QStringList lines;
  if (shown != text_) lines << text_;
  if (!hint_.isEmpty()) lines << hint_;
  setToolTip(lines.join(QLatin1Char('\n')));
}

void PanelWidget::resizeEvent(QResizeEvent*) {
  elide();
}

void PanelWidget::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(rect().topLeft(), rect().topRight());
  painter.drawLine(rect().topLeft(), rect().bottomLeft());
  painter.setPen(palette().color(QPalette::Light));
  painter.drawLine(rect().bottomLeft(), rect().bottomRight());
  painter.drawLine(rect().topRight(), rect().bottomRight());
  painter.end();
  QLabel::paintEvent(event);
}

StatusBarWidget::StatusBarWidget(const StatusBar& model, QWidget* parent)
    : QWidget(parent), model_(model) {
  for (std::size_t i = 0; i < model.AllPanels().size(); ++i) {
    panels_.push_back(&MakeChild<PanelWidget>(this));
  }
  showTexts();
}

void StatusBarWidget::showTexts() {
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    // The hint belongs to what the first panel names.
    const QString hint = i == 0 ? ToQString(model_.Hint()) : QString();
    panels_[i]->showText(ToQString(model_.AllPanels()[i].Text()), hint);
  }
  layOut();
}

int StatusBarWidget::wantedHeight() const {
  return std::max(kMinHeight, fontMetrics().height() + 6);
}

void StatusBarWidget::resizeEvent(QResizeEvent*) {
  layOut();
}

void StatusBarWidget::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) layOut();
}

// The numbers are what the panels are for, so none is cut; the one that springs has what is left.
void StatusBarWidget::layOut() {
  const auto& models = model_.AllPanels();
  std::vector<int> widths;
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    const int least = models[i].MinWidth();
    widths.push_back(least == 0 ? 0 : std::max(least, panels_[i]->wantedWidth()));
  }
  const int gaps = kGap * static_cast<int>(widths.size());
  const int spring = std::max(0, width() - std::accumulate(widths.begin(), widths.end(), gaps));
  int left = 0;
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    const int panelWidth = widths[i] == 0 ? spring : widths[i];
    panels_[i]->setGeometry(left, kGap, panelWidth, height() - kGap);
    left += panelWidth + kGap;
  }
}

}  // namespace torvane
