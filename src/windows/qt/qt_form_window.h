// The widget of a form: menu bar, client area, status bar, and the events of the window as a whole.
#pragma once

#include <QEventLoop>
#include <QMenuBar>
#include <QWidget>
#include <optional>

#include "windows/controls/form.h"

class QPushButton;

namespace torvane {

class StatusBarWidget;

class FormWindow : public QWidget {
 public:
  explicit FormWindow(Form& form);

  /// Where the controls stand, below the menu bar.
  QWidget& client() { return *client_; }
  const QWidget& client() const { return *client_; }
  void setStatusBar(StatusBarWidget& bar);

  /// The form's view goes: no event reaches the form any more, a modal loop ends.
  void letGo();
  /// Sees to it that a visible window has been painted, for one that may go before its first event.
  void paintOnce();

  void setClientSize(const QSize& size);
  /// With the frame. Before the window manager has given one, what was asked for last.
  QRect outerBounds() const;
  void setOuterBounds(const QRect& bounds);

  /// Shows the window over `owner` and returns when the form is gone.
  void runModal(QWidget* owner);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void arrange();
  void fireResize();
  void placeWithFrame();
  void centreOver(const QWidget& owner);
  /// Gives a character key to the form first; true if the form keeps it.
  bool previewKey(const QKeyEvent& event);

  Form* form_;
  QMenuBar* menuBar_;
  QWidget* client_;
  StatusBarWidget* statusBar_ = nullptr;
  QEventLoop* modalLoop_ = nullptr;
  std::optional<QRect> wanted_;  ///< outer bounds until the frame is known
  bool closing_ = false;
  bool painted_ = false;
};

}  // namespace torvane
