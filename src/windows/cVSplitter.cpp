#include "windows/cVSplitter.h"

#include <algorithm>
#include <cmath>

#include "platform/winapi.h"
#include "windows/controls/toolkit.h"

// While a drag runs the splitter holds the screen's device context, for the ghost bar; the field is
// also the sign that a drag runs.

namespace torvane {
namespace {

std::int32_t Round(double number) {
  return static_cast<std::int32_t>(std::lround(number));
}

}  // namespace

bool cVSplitter::SetControls(Form& frm, Control& c1, Control& c2, Frame& fra) {
  if (!HasWindowHandle(c1) || !HasWindowHandle(c2)) return false;
  frmParent_ = &frm;
  leftPane_ = &c1;
  rightPane_ = &c2;
  fraSplit_ = &fra;
  fra.BackColor = SystemColor::ActiveBorder;
  fra.Pointer(MousePointer::SizeWestEast);
  fra.BringToFront();

  const auto on = [this](auto handler) {
    return [this, handler](auto&&... arguments) { (this->*handler)(arguments...); };
  };
  frm.Resize = on(&cVSplitter::frmParent_Resize);
  frm.KeyPress = on(&cVSplitter::frmParent_KeyPress);
  fra.MouseDown = on(&cVSplitter::fraSplit_MouseDown);
  fra.MouseMove = on(&cVSplitter::fraSplit_MouseMove);
  fra.MouseUp = on(&cVSplitter::fraSplit_MouseUp);
  ReadMetrics();
  return true;
}

bool cVSplitter::HasWindowHandle(const Control& control) {
  if (control.hWnd()) return true;
  CurrentToolkit().ShowMessage(control.Name() + u" must be a window (have a window handle).", MB_OK,
                               ApplicationTitle());
  return false;
}

void cVSplitter::ReadMetrics() {
  const int cxFrame = frmParent_->SystemMetric(SM_CXFRAME);
  const int cxBorder = frmParent_->SystemMetric(SM_CXBORDER);
  if (barWidth_ == 0) barWidth_ = cxFrame - cxBorder;
  const HWND window = leftPane_->hWnd();
  if ((GetWindowLongPtrW(window, GWL_STYLE) & WS_BORDER) != 0 &&
      (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0) {
    edgeOverlap_ = cxBorder;
  }
  minPaneWidth_ = (frmParent_->SystemMetric(SM_CXMINTRACK) - (2 * cxFrame + barWidth_)) / 2;
}

// A drag that is running counts from where the bar was at the former scale, so it ends.
void cVSplitter::Rescale() {
  if (!frmParent_) return;
  CancelSplit();
  barWidth_ = 0;
  edgeOverlap_ = 0;
  ReadMetrics();
  frmParent_Resize();
}

void cVSplitter::Left(std::int32_t x) {
  if (x < 0 || !fraSplit_) return;
  fraSplit_->Left(x);
  LayoutPanes();
}

// The upper bound wins where the two collide.
std::int32_t cVSplitter::Clip(std::int32_t position) const {
  return std::min(std::max(position, minPaneWidth_), clientWidth_ - (barWidth_ + minPaneWidth_));
}

void cVSplitter::LayoutPanes() {
  RECT client{};
  GetClientRect(frmParent_->hWnd(), &client);
  if (ratio_ <= 0) {
    if (splitPosition_ == 0) splitPosition_ = fraSplit_->Left();
    if (referenceWidth_ == 0) referenceWidth_ = client.right;
    ratio_ = static_cast<float>(splitPosition_) / static_cast<float>(referenceWidth_);
  }
  clientWidth_ = client.right;
  bottom_ = client.bottom - frmParent_->StatusBarHeight();
  if (bottom_ < top_) return;
  splitPosition_ = Clip(Round(static_cast<double>(ratio_) * clientWidth_));
  MovePanes();
}

// The pane that shrinks goes first, so that the two never overlap on the way.
void cVSplitter::MovePanes() {
  const bool leftShrinks = splitPosition_ < lastPosition_;
  leftShrinks ? MoveLeftPane() : MoveRightPane();
  MoveBar();
  leftShrinks ? MoveRightPane() : MoveLeftPane();
  lastPosition_ = splitPosition_;
}

void cVSplitter::MoveLeftPane() const {
  MoveWindow(leftPane_->hWnd(), 0, top_, splitPosition_ + edgeOverlap_, PaneHeight(), TRUE);
  UpdateWindow(leftPane_->hWnd());
}

void cVSplitter::MoveRightPane() const {
  const std::int32_t begin = splitPosition_ + barWidth_;
  MoveWindow(rightPane_->hWnd(), begin - edgeOverlap_, top_, clientWidth_ - begin + edgeOverlap_,
             PaneHeight(), TRUE);
  UpdateWindow(rightPane_->hWnd());
}

void cVSplitter::MoveBar() const {
  fraSplit_->Visible(false);
  MoveWindow(fraSplit_->hWnd(), splitPosition_, top_, barWidth_, PaneHeight(), TRUE);
  fraSplit_->Visible(true);
  UpdateWindow(fraSplit_->hWnd());
}

std::int32_t cVSplitter::WantedPosition(float x) const {
  return fraSplit_->Left() + frmParent_->Scale().ToPixels({x});
}

void cVSplitter::fraSplit_MouseDown(int Button, int /*Shift*/, float x, float /*y*/) {
  if (Button != kLeftButton) return;
  screen_ = GetDC(nullptr);
  if (!screen_) return;
  referenceWidth_ = frmParent_->ScaleWidth();
  ratio_ = 0;
  splitPosition_ = Clip(WantedPosition(x));
  if (fTrackSplit_) {
    dragStart_ = splitPosition_;
  } else {
    InvertBar();
  }
}

void cVSplitter::fraSplit_MouseMove(int /*Button*/, int /*Shift*/, float x, float /*y*/) {
  if (!screen_) return;
  if (!fTrackSplit_) InvertBar();
  splitPosition_ = Clip(WantedPosition(x));
  fTrackSplit_ ? MovePanes() : InvertBar();
}

void cVSplitter::fraSplit_MouseUp(int Button, int /*Shift*/, float x, float /*y*/) {
  if (Button == kLeftButton) EndDrag(x);
}

void cVSplitter::EndDrag(float x) {
  if (!screen_) return;
  if (!fTrackSplit_) InvertBar();
  ReleaseScreen();
  splitPosition_ = Clip(WantedPosition(x));
  MovePanes();
}

void cVSplitter::CancelSplit() {
  if (!screen_) return;
  ReleaseCapture();
  if (fTrackSplit_) {
    splitPosition_ = dragStart_;
    MovePanes();
  } else {
    InvertBar();
  }
  ReleaseScreen();
}

void cVSplitter::ReleaseScreen() {
  ReleaseDC(nullptr, screen_);
  screen_ = nullptr;
}

// Inverting needs no brush, and a second time at the same place restores the screen.
void cVSplitter::InvertBar() const {
  POINT corner{splitPosition_, top_};
  ClientToScreen(frmParent_->hWnd(), &corner);
  PatBlt(screen_, corner.x, corner.y, barWidth_, PaneHeight(), DSTINVERT);
}

void cVSplitter::frmParent_KeyPress(int& KeyAscii) {
  constexpr int kEscape = 27;
  if (KeyAscii != kEscape || !screen_) return;
  CancelSplit();
  KeyAscii = 0;
}

void cVSplitter::frmParent_Resize() {
  if (frmParent_->State() != WindowState::Minimized) LayoutPanes();
}

}  // namespace torvane
