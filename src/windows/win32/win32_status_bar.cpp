#include "windows/win32/win32_status_bar.h"

#include "windows/controls/toolkit.h"

#include <algorithm>

namespace torvane {

Win32StatusBar::Win32StatusBar(HWND form, StatusBar& bar, Win32Fonts& fonts)
    : Win32View(form, bar,
                {.className = STATUSCLASSNAMEW,
                 .style = SBARS_SIZEGRIP | CCS_BOTTOM,
                 .font = fonts.message()}) {
  Win32StatusBar::onFormResized();
  Win32StatusBar::update();
}

void Win32StatusBar::update() {
  const std::vector<Panel>& panels = model().AllPanels();
  for (std::size_t part = 0; part < panels.size(); ++part) {
    SendMessageW(window(), SB_SETTEXTW, part, reinterpret_cast<LPARAM>(Wide(panels[part].Text())));
  }
}

// The bar goes to its form's bottom edge by itself when it is told that the form has another size.
void Win32StatusBar::onFormResized() {
  SendMessageW(window(), WM_SIZE, 0, 0);
  layOutParts();
}

void Win32StatusBar::layOutParts() {
  const std::vector<Panel>& panels = model().AllPanels();
  RECT client{};
  GetClientRect(window(), &client);
  int spring = client.right - GetSystemMetrics(SM_CXVSCROLL);
  for (const Panel& panel : panels) spring -= DesignPixels(panel.MinWidth());

  std::vector<int> edges;
  int edge = 0;
  for (const Panel& panel : panels) {
    edge += panel.MinWidth() > 0 ? DesignPixels(panel.MinWidth()) : std::max(spring, 0);
    edges.push_back(edge);
  }
  // The last part goes on under the size grip.
  if (!edges.empty()) edges.back() = -1;
  SendMessageW(window(), SB_SETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data()));
}

}  // namespace torvane
