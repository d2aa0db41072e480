// The geometry of a form's widget: menu bar, client area and status bar, the window's place on the
// screen with its frame.
#pragma once

#include <QMenuBar>
#include <QWidget>
#include <optional>

namespace torvane {

class StatusBarWidget;

class ArrangedWindow : public QWidget {
 public:
  /// Where the controls stand, below the menu bar.
  QWidget& client() { return *client_; }
  const QWidget& client() const { return *client_; }
  void setStatusBar(StatusBarWidget& bar);

  void setClientSize(const QSize& size);
  /// With the frame. Before the window manager has given one, what was asked for last.
  QRect outerBounds() const;
  void setOuterBounds(const QRect& bounds);

 protected:
  explicit ArrangedWindow(Qt::WindowFlags flags);

  QMenuBar& menuBar() { return *menuBar_; }
  /// Takes the bounds that were asked for, once the window has its frame.
  void placeWithFrame();
  void centreOver(const QWidget& owner);
  /// The client area has another size.
  virtual void clientResized() = 0;

  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void arrange();

  QMenuBar* menuBar_;
  QWidget* client_;
  StatusBarWidget* statusBar_ = nullptr;
  std::optional<QRect> wanted_;  ///< outer bounds until the frame is known
};

}  // namespace torvane
