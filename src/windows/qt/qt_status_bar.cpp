#include "windows/qt/qt_status_bar.h"

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

void PanelWidget::showText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleName(text);
  elide();
}

void PanelWidget::elide() {
  const QString shown = fontMetrics().elidedText(text_, Qt::ElideRight, width() - 2 * kMargin);
  setText(shown);
  setToolTip(shown == text_ ? QString() : text_);
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
    panels_[i]->showText(ToQString(model_.AllPanels()[i].Text()));
  }
}

int StatusBarWidget::wantedHeight() const {
  return std::max(kMinHeight, fontMetrics().height() + 6);
}

void StatusBarWidget::resizeEvent(QResizeEvent*) {
  const auto& models = model_.AllPanels();
  const int gaps = kGap * static_cast<int>(models.size());
  const int fixed =
      std::accumulate(models.begin(), models.end(), gaps,
                      [](int sum, const Panel& panel) { return sum + panel.MinWidth(); });
  const int spring = std::max(0, width() - fixed);
  int left = 0;
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    const int own = models[i].MinWidth();
    const int panelWidth = own == 0 ? spring : own;
    panels_[i]->setGeometry(left, kGap, panelWidth, height() - kGap);
    left += panelWidth + kGap;
  }
}

}  // namespace torvane
