// Reading a list and rewriting it with every second entry deleted, from a hive that hasn't been
// read yet to the new file on the disk.
#include <benchmark/benchmark.h>

#include "big_hive.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/disk/write_back.h"
#include "platform/posix/prefix/new_hive.h"
#include "platform/posix/prefix/prefix.h"

namespace torvane::benchmarks {
namespace {

void ReadAndRewrite(benchmark::State& state) {
  const auto count = static_cast<int>(state.range(0));
  UrlList world;
  const std::filesystem::path hive = posix::PrefixRoot() / "user.reg";
  const std::string text = posix::NewHive(posix::HiveRoot::User, "win64") + MakeListKey(count);
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    WriteFile(hive, text);
    posix::ForgetWorld();
    state.ResumeTiming();
    world.Fill();
    world.DeleteEverySecond();
    if (!posix::WriteBackChanges().empty() || world.Count() != count / 2)
      state.SkipWithError("the list wasn't rewritten");
  }
  state.counters["seconds_per_entry"] = benchmark::Counter(
      count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(ReadAndRewrite)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->UseRealTime()
    ->Repetitions(5)
    ->Unit(benchmark::kMillisecond);

/// The same for files, every one of them looked for in one folder of 10,000 files.
void ReadFileList(benchmark::State& state) {
  constexpr int kFiles = 10000;
  UrlList world;
  std::filesystem::create_directories(world.HostPath("C:\\files"));
  std::string text =
      posix::NewHive(posix::HiveRoot::User, "win64") + "\n[Software\\\\TorvaneTest\\\\List] 1\n";
  for (int n = 1; n <= kFiles; ++n) {
    const std::string name = "Document " + std::to_string(n) + ".txt";
    WriteFile(world.HostPath("C:\\files\\" + name), {});
    text += "\"File" + std::to_string(n) + "\"=\"C:\\\\FILES\\\\" + name + "\"\n";
  }
  WriteFile(posix::PrefixRoot() / "user.reg", text);
  for ([[maybe_unused]] auto _ : state) {
    posix::ForgetWorld();
    world.FillFiles();
    if (world.Count() != kFiles || Counters().MissingCount != 0) state.SkipWithError("missing");
  }
  state.counters["seconds_per_entry"] = benchmark::Counter(
      kFiles, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(ReadFileList)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace torvane::benchmarks
