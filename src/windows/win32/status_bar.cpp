#include "windows/win32/status_bar.h"

#include <algorithm>

namespace torvane {

Win32StatusBar::Win32StatusBar(HWND form, StatusBar& bar)
    : Win32View(form, bar,
                {.className = STATUSCLASSNAMEW,
                 .style = SBARS_SIZEGRIP | CCS_BOTTOM,
                 .font = {.face = FontUse::Face::Message}}) {
  Win32StatusBar::onFormResized();
  Win32StatusBar::modelChanged();
}

void Win32StatusBar::modelChanged() {
  const std::vector<Panel>& panels = model().AllPanels();
  for (std::size_t part = 0; part < panels.size(); ++part) {
    SendMessageW(window(), SB_SETTEXTW, part, reinterpret_cast<LPARAM>(Wide(panels[part].Text())));
  }
  layOutParts();
}

void Win32StatusBar::setHint(const Text& hint) {
  Win32View::setHint(hint);
  tip_.reset();
  if (hint.empty()) return;
  tip_.reset(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0, 0,
                             0, 0, window(), nullptr, nullptr, nullptr));
  if (!tip_) return;
  // The control copies the text.
  Text text = hint;
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_SUBCLASS;
  tool.hwnd = window();
  tool.lpszText = WideBuffer(text);
  SendMessageW(tip_.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  placeTip();
}

void Win32StatusBar::placeTip() {
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.hwnd = window();
  SendMessageW(window(), SB_GETRECT, 0, reinterpret_cast<LPARAM>(&tool.rect));
  if (tip_) SendMessageW(tip_.get(), TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
}

// The bar goes to its form's bottom edge by itself when it is told that the form has another size.
void Win32StatusBar::onFormResized() {
  SendMessageW(window(), WM_SIZE, 0, 0);
  layOutParts();
}

void Win32StatusBar::onRescaled(double factor) {
  Win32Control::onRescaled(factor);
  onFormResized();
}

/// The numbers are what the panels are for, so none is cut; 0 for the panel that springs.
int Win32StatusBar::widthOf(const Panel& panel) const {
  if (panel.MinWidth() == 0) return 0;
  constexpr int kRoomAround = 12;
  return std::max(scale().Design(panel.MinWidth()),
                  textSize(panel.Text()).width + scale().Design(kRoomAround));
}

void Win32StatusBar::layOutParts() {
  const std::vector<Panel>& panels = model().AllPanels();
  RECT client{};
  GetClientRect(window(), &client);
  int spring = client.right - SystemMetricAt(SM_CXVSCROLL, dpi());
  for (const Panel& panel : panels) spring -= widthOf(panel);

  std::vector<int> edges;
  int edge = 0;
  for (const Panel& panel : panels) {
    edge += panel.MinWidth() > 0 ? widthOf(panel) : std::max(spring, 0);
    edges.push_back(edge);
  }
  // The last part goes on under the size grip.
  if (!edges.empty()) edges.back() = -1;
  SendMessageW(window(), SB_SETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data()));
  placeTip();
}

}  // namespace torvane
