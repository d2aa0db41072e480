// Loading a hive, and rewriting one key of a large one beside plainly reading, parsing and writing
// the same file.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "big_hive.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/disk/write_back.h"
#include "platform/posix/prefix/prefix.h"

namespace torvane::benchmarks {
namespace {

constexpr std::size_t kLarge = std::size_t{50} << 20;
constexpr int kEntries = 20;

/// A prefix whose user.reg is large and holds the list in its middle.
class LargeHive {
 public:
  LargeHive() : file_(posix::PrefixRoot() / "user.reg") {
    const std::string keys = MakeHive(kLarge);
    const std::size_t middle = keys.find("\n\n[", keys.size() / 2) + 1;
    text_ = keys.substr(0, middle) + MakeListKey(kEntries) + keys.substr(middle);
    put();
  }
  void put() const { WriteFile(file_, text_); }
  const std::filesystem::path& file() const { return file_; }
  std::size_t size() const { return text_.size(); }
  UrlList& world() { return world_; }

 private:
  UrlList world_;
  std::filesystem::path file_;
  std::string text_;
};

/// Kilobytes that loading the file adds to a process of its own, at most.
double MemoryOfLoading(const std::filesystem::path& file) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return -1;
  // What the heap holds free would be used again and not show.
  malloc_trim(0);
  const pid_t child = fork();
  if (child == 0) {
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    const posix::HiveImage image(posix::ReadWholeFile(file), {});
    getrusage(RUSAGE_SELF, &after);
    const auto added = static_cast<double>(after.ru_maxrss - before.ru_maxrss);
    _exit(write(ends[1], &added, sizeof added) == sizeof added ? 0 : 1);
  }
  double added = -1;
  if (read(ends[0], &added, sizeof added) != sizeof added) added = -1;
  waitpid(child, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  return added;
}

void LoadHive(benchmark::State& state) {
  LargeHive hive;
  for ([[maybe_unused]] auto _ : state) {
    const posix::HiveImage image(posix::ReadWholeFile(hive.file()), {});
    if (!image.problem().empty()) state.SkipWithError(image.problem().c_str());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(hive.size()));
  state.counters["memory_per_file"] =
      MemoryOfLoading(hive.file()) * 1024 / static_cast<double>(hive.size());
}
BENCHMARK(LoadHive)->UseRealTime()->Iterations(5)->Repetitions(5)->Unit(benchmark::kMillisecond);

void PlainReadParseWrite(benchmark::State& state) {
  LargeHive hive;
  for ([[maybe_unused]] auto _ : state) {
    const posix::HiveImage image(posix::ReadWholeFile(hive.file()), {});
    const posix::FolderLock lock(hive.file().parent_path());
    posix::FileReplacement replacement(hive.file());
    image.write({}, replacement);
    replacement.commit();
  }
}
BENCHMARK(PlainReadParseWrite)
    ->UseRealTime()
    ->Iterations(5)
    ->Repetitions(5)
    ->Unit(benchmark::kMillisecond);

void RewriteOneKey(benchmark::State& state) {
  LargeHive hive;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    hive.put();
    sync();
    posix::ForgetWorld();
    state.ResumeTiming();
    hive.world().Fill();
    hive.world().DeleteEverySecond();
    if (!posix::WriteBackChanges().empty() || hive.world().Count() != kEntries / 2)
      state.SkipWithError("the list wasn't rewritten");
  }
}
BENCHMARK(RewriteOneKey)
    ->UseRealTime()
    ->Iterations(5)
    ->Repetitions(5)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace torvane::benchmarks
