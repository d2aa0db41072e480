#include "windows/controls/form.h"

#include <cmath>

#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

Twips ToTwips(int pixels) {
  return {static_cast<double>(pixels) * CurrentToolkit().TwipsPerPixel()};
}

int ToPixels(Twips length) {
  return static_cast<int>(std::lround(length.count / CurrentToolkit().TwipsPerPixel()));
}

}  // namespace

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
  if (view_) view_->refresh();
}

void Form::Caption(Text caption) {
  caption_ = std::move(caption);
  if (view_) view_->setCaption(caption_);
}

Twips Form::Left() const {
  return view_ ? ToTwips(view_->outerBounds().left) : Twips{};
}
Twips Form::Top() const {
  return view_ ? ToTwips(view_->outerBounds().top) : Twips{};
}
Twips Form::Width() const {
  return view_ ? ToTwips(view_->outerBounds().width) : Twips{};
}
Twips Form::Height() const {
  return view_ ? ToTwips(view_->outerBounds().height) : Twips{};
}

void Form::Move(Twips left, Twips top, Twips width, Twips height) {
  if (!view_) return;
  view_->setOuterBounds({ToPixels(left), ToPixels(top), ToPixels(width), ToPixels(height)});
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
