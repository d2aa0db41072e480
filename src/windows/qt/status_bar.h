// The view of a status bar: a row of sunken panels.
#pragma once

#include <QLabel>
#include <vector>

#include "windows/controls/simple_controls.h"
#include "windows/qt/control.h"

namespace torvane {

/// A panel: one line of text, shortened to the room it has.
class PanelWidget : public QLabel {
 public:
  explicit PanelWidget(QWidget* parent);
  /// Shows a text, and a hint where the mouse rests on it.
  void showText(const QString& text, const QString& hint);
  /// The width that shows the text whole.
  int wantedWidth() const;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void elide();

  QString text_;
  QString hint_;
};

/// A status bar's widget.
class StatusBarWidget : public QWidget {
 public:
  StatusBarWidget(const StatusBar& model, QWidget* parent);
  void showTexts();
  /// The height that the bar wants, in pixels.
  int wantedHeight() const;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void layOut();

  const StatusBar& model_;
  std::vector<PanelWidget*> panels_;
};

class QtStatusBar : public QtControl<ControlView, StatusBarWidget> {
 public:
  QtStatusBar(const StatusBar& model, const QtShared& shared, QWidget& parent)
      : QtControl(model, shared, {}, model, &parent) {}
  void modelChanged() override { widget().showTexts(); }
  void setHint(const Text& hint) override {
    QtControl::setHint(hint);
    widget().showTexts();
  }
};

}  // namespace torvane
