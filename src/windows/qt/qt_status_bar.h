// The view of a status bar: a row of sunken panels.
#pragma once

#include <QLabel>
#include <vector>

#include "windows/controls/simple_controls.h"
#include "windows/qt/qt_control.h"

namespace torvane {

/// A panel: one line of text, shortened to the room it has.
class PanelWidget : public QLabel {
 public:
  explicit PanelWidget(QWidget* parent);
  void showText(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void elide();

  QString text_;
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

 private:
  const StatusBar& model_;
  std::vector<PanelWidget*> panels_;
};

class QtStatusBar : public QtControl<ControlView, StatusBarWidget> {
 public:
  QtStatusBar(const StatusBar& model, QtPictures& pictures, QWidget& parent)
      : QtControl(model, pictures, {}, model, &parent) {}
  void update() override { widget().showTexts(); }
};

}  // namespace torvane
