// The widget of a form: its keys, its modality, and the events of the window as a whole.
#pragma once

#include <QEventLoop>

#include "windows/controls/form.h"
#include "windows/qt/arranged_window.h"
#include "windows/qt/shared.h"

class QPushButton;

namespace torvane {

class FormWindow : public ArrangedWindow {
 public:
  FormWindow(Form& form, const QtShared& shared);

  /// The form's view goes: no event reaches the form any more, a modal loop ends.
  void letGo();
  /// Sees to it that a visible window has been painted, for one that may go before its first event.
  void paintOnce();

  /// Whether the window can be seen but has not been painted yet.
  bool waitsForPaint() const { return isVisible() && !isMinimized() && !painted_; }

  /// Shows the window over `owner` and returns when the form is gone.
  void runModal(QWidget* owner);

 protected:
  void clientResized() override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// Gives a key to the form first; true if the form keeps it.
  bool previewKey(const QKeyEvent& event);
  bool previewCharacter(const QString& text);
  /// Opens the menu that a key stands for: the first for F10, with Alt the one of that letter.
  bool openMenu(const QKeyEvent& event);

  Form* form_;
  WriteBack& writeBack_;
  std::function<void()> firstPainted_;
  QEventLoop* modalLoop_ = nullptr;
  bool closing_ = false;
  bool painted_ = false;
};

}  // namespace torvane
