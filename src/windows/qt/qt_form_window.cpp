// The window is laid out by hand, so that its client area and the controls in it have their places
// before it is first shown: the program restores its size and position on a hidden window.
#include "windows/qt/qt_form_window.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "windows/controls/toolkit.h"
#include "windows/qt/qt_desktop.h"
#include "windows/qt/qt_menu.h"
#include "windows/qt/qt_simple_controls.h"
#include "windows/qt/qt_status_bar.h"
#include "windows/qt/qt_window.h"
#include "windows/qt/qt_write_back.h"

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

FormWindow::FormWindow(Form& form)
    : QWidget(nullptr, FlagsOf(form.Border())),
      form_(&form),
      menuBar_(&MakeChild<QMenuBar>(this)),
      client_(&MakeChild<QWidget>(this)) {
  FillMenuBar(*menuBar_, form.MenuBar(),
              [](MenuItem& item) { RunCommand([&item] { item.Click(); }); });
  menuBar_->setVisible(!menuBar_->actions().isEmpty());
  if (form.Border() == BorderStyle::Sizable) {
    setMinimumSize(kLeastWindowWidth, menuBar_->sizeHint().height());
  }
}

void FormWindow::setStatusBar(StatusBarWidget& bar) {
  statusBar_ = &bar;
  arrange();
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

void FormWindow::setClientSize(const QSize& size) {
  const int menuHeight = menuBar_->isHidden() ? 0 : menuBar_->heightForWidth(size.width());
  resize(size.width(), size.height() + menuHeight);
  arrange();
}

QRect FormWindow::outerBounds() const {
  return wanted_.value_or(frameGeometry());
}

void FormWindow::setOuterBounds(const QRect& bounds) {
  const bool framed = isVisible() && !wanted_;
  const QSize frame = framed ? frameGeometry().size() - size() : QSize(0, 0);
  const QSize inner = (bounds.size() - frame).expandedTo(minimumSize());
  if (!framed) wanted_ = QRect(bounds.topLeft(), inner);
  move(bounds.topLeft());
  resize(inner);
  arrange();
}

void FormWindow::placeWithFrame() {
  if (!wanted_ || !windowHandle()->isExposed()) return;
  const QRect wanted = *std::exchange(wanted_, std::nullopt);
  const QMargins frame = windowHandle()->frameMargins();
  if (frame.isNull() || isMaximized() || isMinimized()) return;
  setOuterBounds(wanted);
}

void FormWindow::centreOver(const QWidget& owner) {
  QRect place = rect();
  place.moveCenter(owner.frameGeometry().center());
  const QRect screen = owner.screen()->availableGeometry();
  place.moveRight(std::min(place.right(), screen.right()));
  place.moveBottom(std::min(place.bottom(), screen.bottom()));
  move(std::max(place.left(), screen.left()), std::max(place.top(), screen.top()));
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
  if (QPushButton* button = ButtonForKey(*client_, Qt::Key_Return)) button->setFocus();
  loop.exec();
  if (alive) modalLoop_ = nullptr;
}

void FormWindow::arrange() {
  const int menuHeight = menuBar_->isHidden() ? 0 : menuBar_->heightForWidth(width());
  menuBar_->setGeometry(0, 0, width(), menuHeight);
  const QSize before = client_->size();
  const QSize size(width(), std::max(0, height() - menuHeight));
  client_->setGeometry(0, menuHeight, size.width(), size.height());
  if (statusBar_) {
    const int barHeight = statusBar_->wantedHeight();
    statusBar_->setGeometry(0, size.height() - barHeight, size.width(), barHeight);
  }
  if (size != before) fireResize();
}

void FormWindow::fireResize() {
  if (!form_) return;
  Deliver([form = form_] { form->Resize(); });
}

void FormWindow::paintEvent(QPaintEvent* event) {
  painted_ = true;
  QWidget::paintEvent(event);
}

void FormWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  arrange();
}

void FormWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) fireResize();
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) arrange();
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
  RunCommand([form = form_] { form->Unload(); });
  if (alive) closing_ = false;
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter && event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  QPushButton* button = ButtonForKey(*client_, event->key());
  if (button) {
    button->click();
  } else if (!enter && isModal()) {
    close();
  }
}

bool FormWindow::previewKey(const QKeyEvent& event) {
  if (!form_ || !form_->KeyPreview || QApplication::activePopupWidget()) return false;
  const QString text = event.text();
  if (text.size() != 1) return false;
  const std::string ansi = ToAnsi(FromQString(text));
  if (ansi.size() != 1) return false;
  int key = static_cast<unsigned char>(ansi.front());
  Deliver([form = form_, &key] { form->KeyPress(key); });
  return key == 0;
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  // The window sees a key once, before the widget with the focus does.
  if (event->type() == QEvent::KeyPress) return previewKey(*static_cast<QKeyEvent*>(event));
  if (event->type() == QEvent::Expose) placeWithFrame();
  return QWidget::eventFilter(watched, event);
}

}  // namespace torvane
