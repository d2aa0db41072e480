#include "windows/qt/qt_toolkit.h"

#include <QAbstractEventDispatcher>
#include <QFileDialog>
#include <QMessageBox>
#include <algorithm>
#include <cstdio>

#include "platform/posix/code_page.h"
#include "platform/posix/drive_paths.h"
#include "platform/posix/prefix.h"
#include "platform/posix/write_back.h"
#include "windows/controls/list.h"
#include "windows/controls/tree.h"
#include "windows/qt/qt_accessible.h"
#include "windows/qt/qt_display.h"
#include "windows/qt/qt_form.h"
#include "windows/qt/qt_frame.h"
#include "windows/qt/qt_list.h"
#include "windows/qt/qt_menu.h"
#include "windows/qt/qt_picture_box.h"
#include "windows/qt/qt_simple_controls.h"
#include "windows/qt/qt_status_bar.h"
#include "windows/qt/qt_tree.h"

namespace torvane {
namespace {

constexpr int kApplicationIcon = 101;
/// Qt's pixels are 1/96 inch whatever the scale of the screen.
constexpr int kTwipsPerPixel = 15;

Text TextOf(const std::string& utf8) {
  return posix::FromUtf8(utf8);
}

/// Gives each control of a form its view.
class ViewMaker : public ControlVisitor {
 public:
  ViewMaker(FormWindow& window, QtPictures& pictures, QtDesktop& desktop)
      : window_(window), pictures_(pictures), desktop_(desktop) {}

  void visit(Tree& tree) override { attach<QtTree>(tree); }
  void visit(List& list) override {
    keep(list, std::make_unique<QtList>(list, pictures_, desktop_, window_.client()));
  }
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
    return keep(model, std::make_unique<View>(model, pictures_, window_.client()));
  }
  template <class Model, class View>
  View& keep(Model& model, std::unique_ptr<View> view) {
    View& made = *view;
    QWidget* widget = &made.widget();
    if (last_) QWidget::setTabOrder(last_, widget);
    last_ = widget;
    model.attachView(std::move(view));
    return made;
  }

  FormWindow& window_;
  QtPictures& pictures_;
  QtDesktop& desktop_;
  QWidget* last_ = nullptr;
};

}  // namespace

QtToolkit::QtToolkit(int& argumentCount, char** arguments)
    : argumentCount_(argumentCount), arguments_(arguments) {}

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
  application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
  QApplication::setApplicationName(QStringLiteral("torvane"));
  QApplication::setDesktopFileName(QStringLiteral("torvane"));
  QApplication::setQuitOnLastWindowClosed(false);
  NameAccessibleRoles();
  signals_ = std::make_unique<ClosingSignals>();
  pictures_ = std::make_unique<QtPictures>();
  posix::SetDesktop(&desktop_);
  if (!openWorld()) return false;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   application_.get(), [this] { writeBack_.idle(); });
  return true;
}

bool QtToolkit::openWorld() {
  try {
    posix::PrefixRoot();
    for (const std::string& problem : posix::HiveProblems()) {
      ShowMessage(TextOf(problem + "\n\nThe file is only read; nothing is written to it."),
                  MB_OK | MB_ICONEXCLAMATION, ApplicationTitle());
    }
    return true;
  } catch (const posix::PrefixError& error) {
    ShowMessage(TextOf(error.what()), MB_OK | MB_ICONERROR, ApplicationTitle());
    return false;
  }
}

void QtToolkit::MakeViews(Form& form) {
  auto view = std::make_unique<QtForm>(form, *pictures_, [this, &form] { forget(form); });
  ViewMaker maker(view->window(), *pictures_, desktop_);
  form.attachView(std::move(view));
  for (Control* control : form.Controls()) control->accept(maker);
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

void QtToolkit::Run() {
  running_ = true;
  // The window is up by now: it needn't have waited for a large icon to be read.
  QApplication::setWindowIcon(pictures_->resourceIcon(kApplicationIcon));
  if (!shown_.empty()) QApplication::exec();
  running_ = false;
  writeBack_.finish();
}

void QtToolkit::DoEvents() {
  QCoreApplication::processEvents();
}

int QtToolkit::ShowMessage(const Text& text, UINT style, const Text& title) {
  QMessageBox box(QApplication::activeWindow());
  box.setWindowIcon(pictures_->resourceIcon(kApplicationIcon));
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

void QtToolkit::ShowPopup(Form&, MenuItem& menu, const MenuItem* defaultItem) {
  MenuItem* chosen = nullptr;
  QMenu popup;
  FillMenu(popup, menu, defaultItem, [&chosen](MenuItem& item) { chosen = &item; });
  popup.exec(desktop_.cursorPlace());
  if (!chosen) return;
  writeBack_.newOrder();
  RunCommand([chosen] { chosen->Click(); });
}

Text QtToolkit::BrowseFolder(Form& owner, const Text& title) {
  const auto* view = dynamic_cast<const QtForm*>(owner.view());
  const QString start = QFile::decodeName((posix::PrefixRoot() / "drive_c").c_str());
  const QString choice =
      QFileDialog::getExistingDirectory(view ? &view->window() : nullptr, ToQString(title), start);
  if (choice.isEmpty()) return {};
  return posix::WindowsPath(QFile::encodeName(choice).toStdString()).value_or(Text());
}

int QtToolkit::TwipsPerPixel() const {
  return kTwipsPerPixel;
}

std::unique_ptr<Toolkit> MakePlatformToolkit(int& argumentCount, char** arguments) {
  return std::make_unique<QtToolkit>(argumentCount, arguments);
}

}  // namespace torvane
