#include "windows/controls/form.h"

#include "windows/controls/toolkit.h"

namespace torvane {
Form::Form(BorderStyle border) : border_(border) {}

Form::~Form() = default;

void Form::Load() {
  if (Loaded()) return;
  life_ = Life::Loaded;
  CurrentToolkit().MakeViews(*this);
  Form_Load();
}

void Form::Unload() {
  if (!Loaded()) return;
  life_ = Life::Unloading;
  Form_Unload();
  life_ = Life::Unloaded;
  CurrentToolkit().DropViews(*this);
}

void Form::Show() {
  Load();
  if (view_) view_->show();
}

void Form::ShowModal(Form& owner) {
  Load();
  if (view_) view_->showModal(owner);
}

void Form::Hide() {
  if (view_) view_->hide();
}

void Form::Refresh() {
  if (view_) view_->paintNow();
}

void Form::Caption(Text caption) {
  caption_ = std::move(caption);
  if (view_) view_->setCaption(caption_);
}

void Form::DesignSize(const PixelSize& size) {
  DesignWidth = size.width;
  DesignHeight = size.height;
  if (view_) view_->setClientSize(size);
}

torvane::Scale Form::Scale() const {
  return view_ ? view_->scale() : CurrentToolkit().ScreenScale();
}

int Form::SystemMetric(int index) const {
  return view_ ? view_->systemMetric(index) : GetSystemMetrics(index);
}

void Form::Rescale() {
  if (!Loaded()) return;
  for (const Control* control : controls_) control->showModel();
  Form_Rescale();
}

// Where a form stands can't be counted at its own scale: it has one only when it stands there.
Twips Form::Left() const {
  return CurrentToolkit().ScreenScale().ToTwips(view_ ? view_->outerBounds().left : 0);
}
Twips Form::Top() const {
  return CurrentToolkit().ScreenScale().ToTwips(view_ ? view_->outerBounds().top : 0);
}
Twips Form::Width() const {
  return Scale().ToTwips(view_ ? view_->outerBounds().width : 0);
}
Twips Form::Height() const {
  return Scale().ToTwips(view_ ? view_->outerBounds().height : 0);
}

void Form::Move(Twips left, Twips top, Twips width, Twips height) {
  if (!view_) return;
  const torvane::Scale first = CurrentToolkit().ScreenScale();
  const auto place = [&](const torvane::Scale& own) {
    view_->setOuterBounds(
        {first.ToPixels(left), first.ToPixels(top), own.ToPixels(width), own.ToPixels(height)});
  };
  const torvane::Scale before = Scale();
  place(before);
  // On a screen of another scale the system has made it larger or smaller.
  if (Scale() != before) place(Scale());
}

torvane::WindowState Form::State() const {
  return view_ ? view_->windowState() : WindowState::Normal;
}

void Form::State(torvane::WindowState state) {
  if (view_) view_->setWindowState(state);
}

void Form::Pointer(MousePointer pointer) {
  if (view_) view_->setMousePointer(pointer);
}

int Form::ScaleWidth() const {
  return view_ ? view_->clientWidth() : DesignWidth;
}
int Form::ScaleHeight() const {
  return view_ ? view_->clientHeight() : DesignHeight;
}

HWND Form::hWnd() const {
  return view_ ? view_->handle() : nullptr;
}

int Form::StatusBarHeight() const {
  return statusBar_ ? statusBar_->Height() : 0;
}

}  // namespace torvane
