// Lists far longer than a program keeps, through the whole program without its window: nothing is
// lost, and the hourglass shows from before the first row changes until the store is written.
#include <algorithm>
#include <functional>
#include <utility>

#include "spine/basMain.h"
#include "spine/frmMain.h"
#include "storage/clsRegistry.h"
#include "support/printing.h"
#include "support/recording_toolkit.h"
#include "support/scratch_world.h"

namespace torvane::testing {
namespace {

/// A form's view that writes down what stood in the list whenever the pointer changed.
class PointerLog : public FormView {
 public:
  using Entry = std::pair<MousePointer, int>;

  PointerLog(std::vector<Entry>& log, std::function<int()> state)
      : log_(log), state_(std::move(state)) {}
  HWND handle() const override { return nullptr; }
  PixelRect outerBounds() const override { return {}; }
  void setOuterBounds(const PixelRect& /*bounds*/) override {}
  Scale scale() const override { return {}; }
  int systemMetric(int) const override { return 0; }
  void setClientSize(const PixelSize&) override {}
  int clientWidth() const override { return 0; }
  int clientHeight() const override { return 0; }
  WindowState windowState() const override { return WindowState::Normal; }
  void setWindowState(WindowState /*state*/) override {}
  void setCaption(const Text& /*caption*/) override {}
  void setMousePointer(MousePointer pointer) override { log_.emplace_back(pointer, state_()); }
  void show() override {}
  void showModal(Form& /*owner*/) override {}
  void hide() override {}
  void paintNow() override {}

 private:
  std::vector<Entry>& log_;
  std::function<int()> state_;
};

class LongListsTest : public ScratchWorld {
 protected:
  static constexpr auto kKey = "software\\ahead\\Nero - Burning Rom\\Recent File List";

  LongListsTest() {
    UseKey("Software\\Halvex\\Torvane");
    MakeWindowsFile("win.ini", {});
    ExtractResources();
    form_.Load();
  }
  ~LongListsTest() override { form_.Unload(); }

  /// What the store holds: the key's values and the file's lines.
  int Stored() const {
    HKEY key = nullptr;
    DWORD values = 0;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, W(kKey), 0, KEY_QUERY_VALUE, &key) == ERROR_SUCCESS) {
      RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr,
                       nullptr, nullptr, nullptr);
      RegCloseKey(key);
    }
    const std::string file = WindowsFileBytes("win.ini");
    return static_cast<int>(values + std::count(file.begin(), file.end(), '='));
  }
  /// Runs an event of the form. The hourglass must come while the store holds `before` entries and
  /// go when it holds `after`.
  void ExpectHourglass(const std::function<void()>& event, int before, int after) {
    std::vector<PointerLog::Entry> log;
    form_.attachView(std::make_unique<PointerLog>(log, [this] { return Stored(); }));
    event();
    form_.attachView(nullptr);
    EXPECT_EQ(log, (std::vector<PointerLog::Entry>{{MousePointer::Hourglass, before},
                                                   {MousePointer::Default, after}}));
  }
  void Choose(const Text& program) {
    for (int n = 1; n <= form_.tvwMRU.Nodes().Count(); ++n) {
      Node& node = form_.tvwMRU.Nodes()(n);
      if (node.Text() == program) form_.tvwMRU.NodeClick(node);
    }
  }

  static std::string LongPath(std::size_t size) { return "c:\\" + std::string(size - 3, 'x'); }

  RecordingToolkit toolkit_;
  frmMain& form_ = MakeMainWindow({});
};

/// A list and what the commands leave of it.
struct LongList {
  const char* name;
  const char16_t* program;
  std::function<int()> make;  ///< gives the number of entries
  int rows;
  int missing;
  int afterMissing;  ///< entries in the store
  int afterAll;
};

TEST_F(LongListsTest, AreShownAndDeletedUnderTheHourglass) {
  const auto makeFiles = [&] {
    const std::filesystem::path file = Host(MakeFile("many\\0.txt"));
    std::vector<TextValue> values;
    for (int n = 1; n <= kManyValues; ++n) {
      const std::string name = std::to_string(n) + ".txt";
      values.emplace_back("File" + std::to_string(n), Folder() + "\\many\\" + name);
      // Names of one file are made faster than files.
      std::error_code isThere;
      if (n % 10 == 0) create_hard_link(file, file.parent_path() / name, isThere);
    }
    MakeKey(kKey, values);
    return kManyValues;
  };
  const auto makeTexts = [&] {
    MakeKey(kKey, {{"File1", LongPath(1 << 20)},
                   {"File2", LongPath(32'000)},
                   {"File3", MakeFile("1.txt")},
                   {"File4", MakeFile("2.txt")}});
    return 4;
  };
  const auto makeIni = [&] {
    std::string lines = "[Ramo's WinVi]\r\n";
    for (int n = 0; n < kManyValues; ++n)
      lines += "RecentFile" + std::to_string(n) + "=c:\\none\r\n";
    MakeWindowsFile("win.ini", lines);
    return kManyValues;
  };
  // The names of 592 keys fill the 8,192 characters. The entry behind them is hidden: it takes the
  // number that has become free. The rest of the names is longer and comes first from then on, so
  // that the next command has fewer numbers, and Delete All takes one more than it shows.
  const LongList lists[] = {
      {"values", u"Nero-Burning Rom", makeFiles, kManyValues, kManyValues / 10 * 9,
       kManyValues / 10, 0},
      {"texts", u"Nero-Burning Rom", makeTexts, 4, 2, 2, 0},
      {"keys", u"WinVi", makeIni, 592, 592, kManyValues - 592, kManyValues - 1 - 574},
  };
  for (const LongList& list : lists) {
    SCOPED_TRACE(list.name);
    const int before = list.make();
    ExpectHourglass([&] { Choose(list.program); }, before, before);
    EXPECT_EQ(form_.lvwMRU.ListItems().Count(), list.rows);
    EXPECT_EQ(form_.sbrInfo.Panels(3).Text(), u"Missing: " + Decimal(list.missing));
    ExpectHourglass([&] { form_.edit.mnuEditMissing.Click(); }, before, list.afterMissing);
    EXPECT_EQ(form_.lvwMRU.ListItems().Count(), list.rows - list.missing);
    EXPECT_EQ(form_.sbrInfo.Panels(2).Text(), u"Total: " + Decimal(list.rows - list.missing));

    int left = list.afterMissing;
    const bool isCut = list.rows < before;
    if (isCut) {
      left = list.make();
      Choose(list.program);
    }
    form_.lvwMRU.ListItems()(1).Selected(true);
    const int one = left - 1;
    ExpectHourglass([&] { form_.edit.mnuEditSelected.Click(); }, left, one);
    ExpectHourglass([&] { form_.edit.mnuEditAll.Click(); }, one, list.afterAll);
    EXPECT_EQ(form_.lvwMRU.ListItems().Count(), 0);
  }
}

TEST_F(LongListsTest, LongTextsSurviveARewriteWhole) {
  const std::string texts[] = {LongPath(1 << 20), LongPath(32'000)};
  MakeKey(kKey, {{"File1", "c:\\gone"}, {"File2", texts[0]}, {"File3", texts[1]}});
  Choose(u"Nero-Burning Rom");
  const auto& items = form_.lvwMRU.ListItems();
  for (int n = 1; n <= items.Count(); ++n) {
    if (items(n).Text() == u"gone") form_.lvwMRU.ListItems()(n).Selected(true);
  }
  form_.edit.mnuEditSelected.Click();
  WriteBack();
  clsRegistry registry;
  registry.ClassKey(kCurrentUser);
  registry.SectionKey(Utf16(kKey));
  std::vector<std::string> stored;
  for (const char16_t* name : {u"File1", u"File2"}) {
    registry.ValueKey(name);
    stored.push_back(Utf8(AsText(registry.Value())));
  }
  EXPECT_TRUE(std::is_permutation(stored.begin(), stored.end(), std::begin(texts)));
}

}  // namespace
}  // namespace torvane::testing
