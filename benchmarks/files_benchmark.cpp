// Lists of files, at several depths, beside a list of as many URLs and a plain look at the same
// files; and single values that are made to take long.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "big_hive.h"
#include "finding/known_lists.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/prefix.h"
#include "readers/has_entries.h"
#include "storage/value_store.h"

namespace torvane::benchmarks {
namespace {

constexpr int kValues = 100'000;
constexpr int kFiles = 10'000;
constexpr std::size_t kLargestValue = std::size_t{1} << 20;

/// Has user.reg hold one list, and settles its stamp: a file that has only just been written is
/// compared at every look.
void StoreList(const std::string& values) {
  WriteFile(posix::PrefixRoot() / "user.reg",
            posix::NewHive(posix::HiveRoot::User, "win64") +
                "\n[Software\\\\TorvaneTest\\\\List] 1700000000\n#time=1da0123456789ab\n" + values);
  posix::ForgetWorld();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

std::string Doubled(std::string_view path) {
  std::string text;
  for (const char letter : path) text.append(letter == '\\' ? 2 : 1, letter);
  return text;
}

std::string ValueLine(int number, std::string_view text) {
  return "\"File" + std::to_string(number) + "\"=\"" + Doubled(text) + "\"\n";
}

/// A folder so many folders down with 10,000 files, and a list of those and of nine times as many
/// that aren't there.
class FileList : public UrlList {
 public:
  explicit FileList(int depth) {
    std::string folder = "C:";
    for (int level = 1; level <= depth; ++level) folder += "\\Folder " + std::to_string(level);
    folder_ = HostPath(folder);
    std::filesystem::create_directories(folder_);
    std::string values;
    for (int n = 1; n <= kValues; ++n) {
      const std::string name = "Document " + std::to_string(n) + ".txt";
      if (n <= kFiles) WriteFile(folder_ / name, {});
      values += ValueLine(n, folder + "\\" + name);
    }
    StoreList(values);
  }
  const std::filesystem::path& folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};

void FillFileList(benchmark::State& state) {
  FileList world(static_cast<int>(state.range(0)));
  for ([[maybe_unused]] auto _ : state) {
    world.FillFiles();
    if (world.Count() != kValues || Counters().MissingCount != kValues - kFiles)
      state.SkipWithError("the wrong files were found");
  }
}
BENCHMARK(FillFileList)->Arg(2)->Arg(5)->Arg(7)->Repetitions(3)->Unit(benchmark::kMillisecond);

/// What a fill of the same list can't do without: the folder read once, each file asked for.
void LookAtFiles(benchmark::State& state) {
  const FileList world(static_cast<int>(state.range(0)));
  for ([[maybe_unused]] auto _ : state) {
    DIR* open = opendir(world.folder().c_str());
    std::vector<std::string> names;
    while (const dirent* entry = readdir(open)) names.emplace_back(entry->d_name);
    closedir(open);
    struct stat status {};
    int found = 0;
    for (const std::string& name : names) {
      found += stat((world.folder() / name).c_str(), &status) == 0 ? 1 : 0;
    }
    if (found != kFiles + 2) state.SkipWithError("files are missing");
  }
}
BENCHMARK(LookAtFiles)->Arg(2)->Arg(5)->Arg(7)->Repetitions(3)->Unit(benchmark::kMillisecond);

void FillUrls(benchmark::State& state) {
  UrlList world;
  std::string values;
  for (int n = 1; n <= kValues; ++n) values += ValueLine(n, UrlList::Url(n));
  StoreList(values);
  for ([[maybe_unused]] auto _ : state) {
    world.Fill();
    if (world.Count() != kValues) state.SkipWithError("values are missing");
  }
}
BENCHMARK(FillUrls)->Repetitions(3)->Unit(benchmark::kMillisecond);

/// One value of a megabyte, of the unit that the argument picks.
void FillOneValue(benchmark::State& state) {
  static constexpr std::array<std::string_view, 9> kUnits = {
      "\\.\\.", "\\..\\x", "\\", "a", "a\\", " . ", "~1\\", "%TEMP%", "\\\\server\\share"};
  UrlList world;
  std::string text = "C:\\";
  while (text.size() < kLargestValue) text += kUnits.at(static_cast<std::size_t>(state.range(0)));
  StoreList(ValueLine(1, text));
  for ([[maybe_unused]] auto _ : state) {
    world.FillFiles();
    if (world.Count() != 1) state.SkipWithError("the value isn't shown");
  }
}
BENCHMARK(FillOneValue)->DenseRange(0, 8)->Iterations(2)->Unit(benchmark::kMillisecond);

/// All values of a key, in one reading.
void ReadValues(benchmark::State& state) {
  UrlList world;
  std::string values;
  for (int n = 1; n <= kFiles; ++n) values += ValueLine(n, UrlList::Url(n));
  StoreList(values);
  const KeyStore store(u"Software\\TorvaneTest\\List");
  for ([[maybe_unused]] auto _ : state) {
    if (store.Read().values.size() != kFiles) state.SkipWithError("values are missing");
  }
}
BENCHMARK(ReadValues)->Repetitions(5)->Unit(benchmark::kMillisecond);

/// Which programs of the catalogue have a list, in a large hive that has been loaded.
void LookForLists(benchmark::State& state) {
  const UrlList world;
  WriteFile(posix::PrefixRoot() / "user.reg", MakeHive(std::size_t{20} << 20));
  posix::ForgetWorld();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  const std::vector<CategoryRow> rows = CatalogueRows();
  const auto look = [&rows] {
    return std::count_if(rows.begin(), rows.end(),
                         [](const CategoryRow& row) { return HasEntries(row.entry); });
  };
  look();
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(look());
}
BENCHMARK(LookForLists)->Repetitions(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace torvane::benchmarks
