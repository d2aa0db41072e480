// The list window with 100,000 rows: filled from the registry until its first picture is painted,
// and scrolled.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QApplication>
#include <QScrollBar>
#include <QTreeView>
#include <stdexcept>

#include "big_hive.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/new_hive.h"
#include "platform/posix/prefix/prefix.h"
#include "platform_toolkit.h"
#include "windows/controls/toolkit.h"

namespace torvane::benchmarks {
namespace {

constexpr int kRows = 100000;

/// A prefix with a long list, and a form of the platform's that shows it.
class LongListWindow : public UrlList {
 public:
  LongListWindow() {
    WriteFile(posix::PrefixRoot() / "user.reg",
              posix::NewHive(posix::HiveRoot::User, "win64") + MakeListKey(kRows));
    posix::ForgetWorld();
    // The scratch world's own toolkit shows no windows.
    SetToolkit(&PlatformToolkit());
    window_.DesignWidth = 800;
    window_.DesignHeight = 600;
    shown_.Move({0, 0, 800, 600});
    window_.Load();
    window_.Show();
    CurrentToolkit().DoEvents();
  }
  ~LongListWindow() override {
    window_.Unload();
    CurrentToolkit().DoEvents();
  }
  LongListWindow(const LongListWindow&) = delete;
  LongListWindow& operator=(const LongListWindow&) = delete;

  void empty() { ClearEntryList(shown_); }
  void fill() {
    posix::ForgetWorld();
    show();
  }
  void show() {
    empty();
    FillUrlList(Row(), shown_);
    SendMessageW(shown_.hWnd(), LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE_USEHEADER);
    CurrentToolkit().DoEvents();
    widget().viewport()->grab();
  }
  void deleteEverySecond() {
    for (int n = 1; n <= rows(); n += 2) shown_.ListItems()(n).Selected(true);
    DeleteSelectedFromRegistry(shown_);
    CurrentToolkit().DoEvents();
    widget().viewport()->grab();
  }
  int rows() const { return shown_.ListItems().Count(); }
  static QTreeView& widget() {
    for (QWidget* top : QApplication::topLevelWidgets())
      if (auto* view = top->findChild<QTreeView*>()) return *view;
    throw std::runtime_error("the list has no widget");
  }

 private:
  Form window_{BorderStyle::Sizable};
  List shown_{window_, u"Shown"};
};

/// Bytes of the heap that are in use.
double HeapInUse() {
  const auto heap = mallinfo2();
  return static_cast<double>(heap.uordblks + heap.hblkhd);
}

void FillListWindow(benchmark::State& state) {
  LongListWindow window;
  // What the first filling loads, the hive ahead of all, is no part of the rows.
  window.fill();
  window.empty();
  const double before = HeapInUse();
  window.show();
  state.counters["bytes_per_row"] = (HeapInUse() - before) / kRows;
  for ([[maybe_unused]] auto _ : state) {
    window.fill();
    if (window.rows() != kRows || LongListWindow::widget().model()->rowCount() != kRows)
      state.SkipWithError("rows are missing");
  }
}
BENCHMARK(FillListWindow)->UseRealTime()->Repetitions(3)->Unit(benchmark::kMillisecond);

/// One step of the scroll bar, up to the new picture.
void ScrollListWindow(benchmark::State& state) {
  LongListWindow window;
  window.fill();
  QScrollBar& bar = *LongListWindow::widget().verticalScrollBar();
  if (bar.maximum() < kRows) state.SkipWithError("there is nothing to scroll");
  int place = 0;
  for ([[maybe_unused]] auto _ : state) {
    place = (place + bar.maximum() / 61) % bar.maximum();
    bar.setValue(place);
    LongListWindow::widget().viewport()->grab();
  }
}
BENCHMARK(ScrollListWindow)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Deletes every second row of the list window, from the command to the new picture.
void DeleteInListWindow(benchmark::State& state) {
  LongListWindow window;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    window.fill();
    state.ResumeTiming();
    window.deleteEverySecond();
    if (window.rows() != kRows / 2) state.SkipWithError("rows weren't deleted");
  }
}
BENCHMARK(DeleteInListWindow)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace torvane::benchmarks
