// The window record of a widget: what the program's messages, styles and properties go to.
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

#include "platform/posix/window.h"

namespace torvane {

/// Registers a widget as a window for as long as this lives. Its client area is the whole widget.
class QtWindow : public posix::WindowHost {
 public:
  /// Answers a message that no procedure in front of the window's own has kept.
  using Answer = std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam)>;

  explicit QtWindow(QWidget& widget, Answer answer = {});
  ~QtWindow() override;
  QtWindow(const QtWindow&) = delete;
  QtWindow& operator=(const QtWindow&) = delete;

  HWND handle() const { return handle_; }

  RECT clientRect() const override;
  void place(const RECT& rect) override;
  void paintNow() override;
  POINT toScreen(POINT client) const override;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  QPointer<QWidget> widget_;
  Answer answer_;
  HWND handle_;
};

/// Makes a widget or another Qt object that belongs to the Qt parent among its arguments.
template <class Object, class... Arguments>
Object& MakeChild(Arguments&&... arguments) {
  return *std::make_unique<Object>(std::forward<Arguments>(arguments)...).release();
}

/// What is held, in the bits of controls/keys.h.
int HeldKeys(Qt::KeyboardModifiers modifiers);

/// Hides a widget whose view goes, and deletes it once no handler of it can be running any more.
void Retire(QWidget* widget);

/// Paints a widget now. A window that has just been shown can't be painted before the display has
/// placed it: what the display has to say is taken in first.
void PaintOnScreen(QWidget& widget);

}  // namespace torvane
