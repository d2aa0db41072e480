// Lists on the real Windows interfaces, timed by itself. `lists_under_wine read` prints the seconds
// that a value takes to be read; `lists_under_wine files` those of a file that is found in a folder
// of 10,000, and of a window that shows 20,000 missing files.
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string_view>

#include "storage/value_store.h"
#include "url_list.h"
#include "windows/controls/toolkit.h"

namespace torvane::benchmarks {
namespace {

constexpr int kValues = 10'000;
constexpr int kFound = 1'000;  ///< of the files of a folder
constexpr int kMissing = 20'000;
constexpr int kRuns = 5;

template <class Work>
double Seconds(const Work& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  return time.count();
}

template <class Work>
double BestOf(int runs, const Work& work) {
  double best = Seconds(work);
  for (int run = 1; run < runs; ++run) best = std::min(best, Seconds(work));
  return best;
}

/// A list of files in one folder.
class FileList : public UrlList {
 public:
  void MakeValuesIn(const std::string& folder, int count) {
    std::vector<testing::TextValue> values;
    for (int n = 1; n <= count; ++n)
      values.emplace_back("File" + std::to_string(n),
                          folder + "\\Document " + std::to_string(n) + ".txt");
    Key(values);
  }
  void MakeFiles() {
    for (int n = 1; n <= kValues; ++n) MakeFile("Document " + std::to_string(n) + ".txt");
    MakeValuesIn(Folder(), kFound);
  }
  static MruEntry FileRow() { return ListEntry("0"); }
};

bool ReadValues() {
  FileList world;
  world.MakeValues(kValues);
  const KeyStore store(u"software\\TorvaneTest\\List");
  std::size_t count = 0;
  const double best = BestOf(kRuns, [&] { count = store.Read().values.size(); });
  std::printf("%.9f\n", best / kValues);
  return count == kValues;
}

bool FindFiles() {
  FileList world;
  world.MakeFiles();
  std::printf("%.9f\n", Seconds([&] { world.FillFiles(); }) / kFound);
  return world.Count() == kFound && Counters().MissingCount == 0;
}

bool ShowMissing(Toolkit& toolkit) {
  FileList world;
  world.MakeValuesIn("C:\\gone", kMissing);
  SetToolkit(&toolkit);
  Form window(BorderStyle::Sizable);
  List list(window, u"Shown");
  window.DesignWidth = 800;
  window.DesignHeight = 600;
  list.Move({0, 0, 800, 600});
  window.Load();
  window.Show();
  toolkit.DoEvents();
  const double time = Seconds([&] {
    ClearEntryList(list);
    FillRegistryList(FileList::FileRow(), list);
    for (WPARAM column = 0; column < 2; ++column)
      SendMessageW(list.hWnd(), LVM_SETCOLUMNWIDTH, column,
                   static_cast<LPARAM>(LVSCW_AUTOSIZE_USEHEADER));
    window.Refresh();
    toolkit.DoEvents();
  });
  std::printf("%.6f\n", time);
  const bool isDone = list.ListItems().Count() == kMissing && Counters().MissingCount == kMissing;
  window.Unload();
  toolkit.DoEvents();
  return isDone;
}

bool Run(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "read") return ReadValues();
  const auto toolkit = MakePlatformToolkit(argc, argv);
  return FindFiles() && toolkit->Start() && ShowMissing(*toolkit);
}

}  // namespace
}  // namespace torvane::benchmarks

int main(int argc, char** argv) {
  return torvane::benchmarks::Run(argc, argv) ? 0 : 1;
}
