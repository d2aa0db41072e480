#include "windows/qt/form_window.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QWindow>

#include "windows/controls/toolkit.h"
#include "windows/qt/desktop.h"
#include "windows/qt/menu.h"
#include "windows/qt/simple_controls.h"
#include "windows/qt/window.h"
#include "windows/qt/write_back.h"

namespace torvane {
namespace {

/// How long a window that is to go waits for the display to show it once, in milliseconds.
constexpr int kLongestFirstPaint = 500;

Qt::WindowFlags FlagsOf(BorderStyle border) {
  switch (border) {
    case BorderStyle::Dialog:
      return Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint;
    case BorderStyle::Splash:
      return Qt::SplashScreen | Qt::FramelessWindowHint;
    case BorderStyle::Sizable:
      break;
  }
  return Qt::Window;
}

/// A sizable window that is modal stands over its owner and doesn't go away alone.
constexpr Qt::WindowFlags kSizableModal = Qt::Dialog | Qt::CustomizeWindowHint |
                                          Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                          Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint;

/// Keys below this have the number of their character.
constexpr int kLetterEnd = 0x10000;

/// The KeyCode of a key, 0 where the program knows none.
int KeyCodeOf(int key) {
  switch (key) {
    case Qt::Key_Escape:
      return kKeyEscape;
    case Qt::Key_Down:
      return kKeyDown;
    case Qt::Key_Delete:
      return kKeyDelete;
    case Qt::Key_F5:
      return kKeyF5;
    default:
      return key >= Qt::Key_A && key <= Qt::Key_Z ? key : 0;
  }
}

/// The visible button for a key that works wherever the focus is, null for none.
QPushButton* ButtonForKey(const QWidget& client, int key) {
  for (QPushButton* button : client.findChildren<QPushButton*>()) {
    if (!button->isVisible() || !button->isEnabled()) continue;
    const bool wanted =
        key == Qt::Key_Escape ? button->property(kCancelProperty).toBool() : button->isDefault();
    if (wanted) return button;
  }
  return nullptr;
}

}  // namespace

FormWindow::FormWindow(Form& form, const QtShared& shared)
    : ArrangedWindow(FlagsOf(form.Border())),
      form_(&form),
      writeBack_(shared.writeBack),
      firstPainted_(shared.firstPainted) {
  FillMenuBar(menuBar(), form.MenuBar(), [&writeBack = writeBack_](MenuItem& item) {
    writeBack.run([&item] { item.Click(); });
  });
  menuBar().setVisible(!menuBar().actions().isEmpty());
  if (form.Border() == BorderStyle::Sizable) {
    setMinimumSize(kLeastWindowWidth, menuBar().sizeHint().height());
  }
}

void FormWindow::letGo() {
  form_ = nullptr;
  if (modalLoop_) modalLoop_->quit();
}

void FormWindow::paintOnce() {
  const QDeadlineTimer limit(kLongestFirstPaint);
  while (isVisible() && !painted_ && !limit.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
}

void FormWindow::runModal(QWidget* owner) {
  if (windowType() == Qt::Window) setWindowFlags(kSizableModal);
  setWindowModality(Qt::ApplicationModal);
  if (owner) {
    centreOver(*owner);
    winId();
    windowHandle()->setTransientParent(owner->windowHandle());
  }
  QEventLoop loop;
  modalLoop_ = &loop;
  const QPointer<FormWindow> alive(this);
  show();
  if (QPushButton* button = ButtonForKey(client(), Qt::Key_Return)) button->setFocus();
  loop.exec();
  if (alive) modalLoop_ = nullptr;
}

void FormWindow::clientResized() {
  if (!form_) return;
  Deliver([form = form_] { form->Resize(); });
}

void FormWindow::paintEvent(QPaintEvent* event) {
  // Ahead of the display's asking the picture is drawn, but not seen.
  const bool isSeen = windowHandle() && windowHandle()->isExposed();
  if (isSeen && !std::exchange(painted_, true)) firstPainted_();
  QWidget::paintEvent(event);
}

void FormWindow::changeEvent(QEvent* event) {
  ArrangedWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) clientResized();
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && form_) {
    Deliver([form = form_] { form->Activate(); });
  }
  const bool otherFont =
      event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
  if (otherFont && form_) Deliver([form = form_] { form->Rescale(); });
}

void FormWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  windowHandle()->removeEventFilter(this);
  windowHandle()->installEventFilter(this);
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (!form_ || closing_) return;
  closing_ = true;
  const QPointer<FormWindow> alive(this);
  writeBack_.run([form = form_] { form->Unload(); });
  if (alive) closing_ = false;
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter && event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  QPushButton* button = ButtonForKey(client(), event->key());
  if (button) {
    button->click();
  } else if (!enter && isModal()) {
    close();
  }
}

bool FormWindow::previewKey(const QKeyEvent& event) {
  if (!form_ || QApplication::activePopupWidget()) return false;
  if (openMenu(event)) return true;
  if (!form_->KeyPreview) return false;
  const QPointer<FormWindow> alive(this);
  int code = KeyCodeOf(event.key());
  const bool known = code != 0;
  if (known) {
    Deliver(
        [form = form_, &code, held = HeldKeys(event.modifiers())] { form->KeyDown(code, held); });
  }
  if (!alive || !form_ || (known && code == 0)) return true;
  return previewCharacter(event.text());
}

bool FormWindow::previewCharacter(const QString& text) {
  if (text.size() != 1) return false;
  const std::string ansi = ToAnsi(FromQString(text));
  if (ansi.size() != 1) return false;
  int key = static_cast<unsigned char>(ansi.front());
  Deliver([form = form_, &key] { form->KeyPress(key); });
  return key == 0;
}

bool FormWindow::openMenu(const QKeyEvent& event) {
  int place = -1;
  if (event.key() == Qt::Key_F10 && event.modifiers() == Qt::NoModifier) place = 0;
  if (event.modifiers() == Qt::AltModifier && event.key() < kLetterEnd) {
    place = form_->MenuBar().PlaceByLetter(static_cast<char16_t>(event.key()));
  }
  const QList<QAction*> menus = menuBar().actions();
  if (place < 0 || place >= menus.size()) return false;
  menuBar().setActiveAction(menus[place]);
  return true;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  // The window sees a key once, before the widget with the focus does.
  if (event->type() == QEvent::KeyPress) return previewKey(*static_cast<QKeyEvent*>(event));
  if (event->type() == QEvent::Expose) placeWithFrame();
  return QWidget::eventFilter(watched, event);
}

}  // namespace torvane
