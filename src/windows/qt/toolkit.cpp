#include "windows/qt/toolkit.h"

#include <dlfcn.h>

#include <QAbstractEventDispatcher>
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QShortcut>
#include <algorithm>
#include <cstdio>
#include <thread>
#include <utility>

#include "platform/posix/disk/forget.h"
#include "platform/posix/disk/write_back.h"
#include "platform/posix/paths/drive_paths.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/registry/registry.h"
#include "platform/posix/text/code_page.h"
#include "platform/resource_numbers.h"
#include "windows/controls/list.h"
#include "windows/controls/tree.h"
#include "windows/qt/accessible.h"
#include "windows/qt/form.h"
#include "windows/qt/frame.h"
#include "windows/qt/list.h"
#include "windows/qt/menu.h"
#include "windows/qt/prefix_choice.h"
#include "windows/qt/simple_controls.h"
#include "windows/qt/status_bar.h"
#include "windows/qt/tree.h"

namespace torvane {
namespace {

Text TextOf(const std::string& utf8) {
  return posix::FromUtf8(utf8);
}

/// Gives each control of a form its view.
class ViewMaker : public ControlVisitor {
 public:
  ViewMaker(FormWindow& window, const QtShared& shared) : window_(window), shared_(shared) {}

  void visit(Tree& tree) override { attach<QtTree>(tree); }
  void visit(List& list) override { attach<QtList>(list); }
  void visit(StatusBar& bar) override { window_.setStatusBar(attach<QtStatusBar>(bar).widget()); }
  void visit(Frame& frame) override { attach<QtFrame>(frame); }
  void visit(PictureBox& box) override { attach<QtPictureBox>(box); }
  void visit(Label& label) override { attach<QtLabel>(label); }
  void visit(Line& line) override { attach<QtLine>(line); }
  void visit(Button& button) override { attach<QtButton>(button); }
  void visit(TextBox& box) override { attach<QtTextBox>(box); }

 private:
  template <class View, class Model>
  View& attach(Model& model) {
    auto view = std::make_unique<View>(model, shared_, window_.client());
    View& made = *view;
    QWidget* widget = &made.widget();
    if (last_) QWidget::setTabOrder(last_, widget);
    last_ = widget;
    model.attachView(std::move(view));
    return made;
  }

  FormWindow& window_;
  const QtShared& shared_;
  QWidget* last_ = nullptr;
};

/// Reads the settings of fonts, which Qt would do before it measures the first text. It takes as
/// long as opening the display, so it is done beside that. Where the library isn't found Qt has
/// another source of fonts, or none.
void ReadFontSettings() {
  void* library = dlopen("libfontconfig.so.1", RTLD_LAZY);
  if (!library) return;
  if (void* init = dlsym(library, "FcInit")) reinterpret_cast<int (*)()>(init)();
}

/// The main window is the one with the menus.
bool IsMainWindow(Form& form) {
  return !form.MenuBar().Items().empty();
}

}  // namespace

QtToolkit::QtToolkit(int& argumentCount, char** arguments)
    : argumentCount_(argumentCount), arguments_(arguments) {
  idle_.setSingleShot(true);
  QObject::connect(&idle_, &QTimer::timeout, &idle_, [this] {
    if (waitsForPaint()) return;
    showThemeIcons();
    for (const auto& work : std::exchange(idleWork_, {})) Deliver(work);
  });
}

QtToolkit::~QtToolkit() {
  posix::SetDesktop(nullptr);
  for (Form* form : std::vector<Form*>(shown_)) QtToolkit::DropViews(*form);
  if (application_) QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool QtToolkit::Start() {
  if (!HasDisplay()) {
    std::fputs("torvane: no display to open a window on (DISPLAY and WAYLAND_DISPLAY)\n", stderr);
    return false;
  }
  // The menu bar is the window's own; asking the session for another place would hold up the start.
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
  const std::jthread fonts(ReadFontSettings);
  application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
  QApplication::setApplicationName(QStringLiteral("torvane"));
  QApplication::setDesktopFileName(QStringLiteral("torvane"));
  QApplication::setQuitOnLastWindowClosed(false);
  NameAccessibleRoles();
  signals_ = std::make_unique<ClosingSignals>();
  icons_ = std::make_unique<QtIcons>();
  posix::SetDesktop(&desktop_);
  if (!openWorld()) return false;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   application_.get(), [this] { writeBack_.idle(); });
  return true;
}

bool QtToolkit::openWorld() {
  try {
    if (const auto prefixes = posix::PrefixesToChooseFrom(); !prefixes.empty()) {
      QApplication::setWindowIcon(icons_->resourceIcon(resource::kApplicationIcon));
      const auto chosen = AskForPrefix(nullptr, prefixes, posix::LastChoice());
      if (!chosen) return false;
      posix::ChoosePrefix(*chosen);
    }
    const std::filesystem::path& root = posix::PrefixRoot();
    if (!posix::ChosenTitle().empty()) posix::KeepChoice(root);
    return true;
  } catch (const posix::PrefixError& error) {
    ShowMessage(TextOf(error.what()), MB_OK | MB_ICONERROR, ApplicationTitle());
    return false;
  }
}

// Reading the hives takes longer than the rest of the start, so the window doesn't wait for it.
void QtToolkit::tellProblems() {
  for (const std::string& problem : posix::HiveProblems()) {
    ShowMessage(TextOf(problem + "\n\nThe file is only read; nothing is written to it."),
                MB_OK | MB_ICONEXCLAMATION, ApplicationTitle());
  }
}

void QtToolkit::choosePrefix(Form& mainForm) {
  const auto* view = dynamic_cast<const QtForm*>(mainForm.view());
  if (!view || next_) return;
  const auto chosen = AskForPrefix(&view->window(), posix::FindPrefixes(), posix::PrefixRoot());
  if (!chosen || chosen->root == posix::PrefixRoot()) return;
  // What can't be written now would be lost; the user has been told.
  if (!writeBack_.writeAll()) return;
  next_ = chosen;
  view->window().close();
}

void QtToolkit::MakeViews(Form& form) {
  const auto firstPainted = [this, isMain = IsMainWindow(form)] {
    if (isMain) idle_.start();
  };
  const QtShared shared{*icons_, writeBack_, firstPainted};
  auto view = std::make_unique<QtForm>(form, shared, [this, &form] { forget(form); });
  FormWindow& window = view->window();
  ViewMaker maker(window, shared);
  form.attachView(std::move(view));
  for (Control* control : form.Controls()) control->accept(maker);
  if (IsMainWindow(form)) {
    auto& shortcut = MakeChild<QShortcut>(QKeySequence(QKeySequence::Open), &window);
    QObject::connect(&shortcut, &QShortcut::activated, &window,
                     [this, &form] { choosePrefix(form); });
  }
  shown_.push_back(&form);
}

void QtToolkit::DropViews(Form& form) {
  if (form.view()) form.view()->hide();
  for (Control* control : form.Controls()) control->detachView();
  form.attachView(nullptr);
}

void QtToolkit::forget(const Form& form) {
  std::erase(shown_, &form);
  if (shown_.empty() && running_) QCoreApplication::exit();
}

bool QtToolkit::Run() {
  running_ = true;
  // The window doesn't wait for a large icon to be read.
  WhenIdle([this] {
    QApplication::setWindowIcon(icons_->resourceIcon(resource::kApplicationIcon));
    tellProblems();
  });
  if (!shown_.empty()) QApplication::exec();
  running_ = false;
  writeBack_.finish();
  if (!next_) return false;
  posix::ForgetWorld();
  posix::ChoosePrefix(*std::exchange(next_, std::nullopt));
  return openWorld();
}

void QtToolkit::DoEvents() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// A display takes a moment to ask for a new window's picture; what is to be done when nothing waits
// would come in between. The window's first picture starts it.
bool QtToolkit::waitsForPaint() const {
  return std::any_of(shown_.begin(), shown_.end(), [](Form* form) {
    const auto* view = dynamic_cast<const QtForm*>(form->view());
    return view && IsMainWindow(*form) && view->window().waitsForPaint();
  });
}

// Finding one icon in a theme can take hundreds of looks at files.
void QtToolkit::showThemeIcons() {
  if (!icons_ || !icons_->readTheme()) return;
  for (const Form* form : shown_) {
    const auto* view = dynamic_cast<const QtForm*>(form->view());
    if (!view) continue;
    for (QWidget* widget : view->window().findChildren<QWidget*>()) widget->update();
  }
}

void QtToolkit::WhenIdle(std::function<void()> work) {
  idleWork_.push_back(std::move(work));
  idle_.start();
}

Text QtToolkit::WorldName() const {
  return u"Wine prefix: " + TextOf(posix::PrefixRoot().string());
}

// While another program is the active one none of ours is; the newest form stands over the others.
QWidget* QtToolkit::boxOwner() const {
  if (QWidget* active = QApplication::activeWindow()) return active;
  const auto shown = std::find_if(shown_.rbegin(), shown_.rend(), [](const Form* form) {
    const auto* view = dynamic_cast<const QtForm*>(form->view());
    return view && view->window().isVisible();
  });
  return shown == shown_.rend() ? nullptr : &dynamic_cast<QtForm&>(*(*shown)->view()).window();
}

int QtToolkit::ShowMessage(const Text& text, UINT style, const Text& title) {
  QMessageBox box(boxOwner());
  box.setWindowIcon(icons_->resourceIcon(resource::kApplicationIcon));
  box.setTextFormat(Qt::PlainText);
  box.setWindowTitle(ToQString(title));
  box.setText(ToQString(text));
  if ((style & MB_ICONEXCLAMATION) == MB_ICONEXCLAMATION) {
    box.setIcon(QMessageBox::Warning);
  } else if ((style & MB_ICONERROR) != 0) {
    box.setIcon(QMessageBox::Critical);
  }
  const bool canCancel = (style & MB_OKCANCEL) != 0;
  box.setStandardButtons(canCancel ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::Ok);
  return box.exec() == QMessageBox::Ok || !canCancel ? IDOK : IDCANCEL;
}

void QtToolkit::ReportError(const Text& description) {
  Text text = description;
  const std::string note = posix::TakeRefusalNote();
  if (!note.empty()) text += u"\n\n" + TextOf(note);
  ShowMessage(text, MB_OK | MB_ICONERROR, ApplicationTitle());
}

void QtToolkit::ShowPopup(Form&, MenuItem& menu, const MenuItem* defaultItem, POINT screen) {
  MenuItem* chosen = nullptr;
  QMenu popup;
  FillMenu(popup, menu, defaultItem, [&chosen](MenuItem& item) { chosen = &item; });
  popup.exec({screen.x, screen.y});
  if (!chosen) return;
  writeBack_.newOrder();
  writeBack_.run([chosen] { chosen->Click(); });
}

void QtToolkit::CopyText(const Text& text) {
  QGuiApplication::clipboard()->setText(
      ToQString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
}

Text QtToolkit::BrowseFolder(Form& owner, const Text& title) {
  const auto* view = dynamic_cast<const QtForm*>(owner.view());
  const QString start = QFile::decodeName((posix::PrefixRoot() / "drive_c").c_str());
  const QString choice =
      QFileDialog::getExistingDirectory(view ? &view->window() : nullptr, ToQString(title), start);
  if (choice.isEmpty()) return {};
  return posix::WindowsPath(QFile::encodeName(choice).toStdString()).value_or(Text());
}

// Qt's pixels are 1/96 inch whatever the scale of the screen.
Scale QtToolkit::ScreenScale() const {
  return {};
}

std::unique_ptr<Toolkit> MakePlatformToolkit(int& argumentCount, char** arguments) {
  return std::make_unique<QtToolkit>(argumentCount, arguments);
}

}  // namespace torvane
