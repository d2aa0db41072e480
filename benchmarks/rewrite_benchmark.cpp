// Reading a list and rewriting it with every second entry deleted, from a hive that hasn't been
// read yet to the new file on the disk.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

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

constexpr int kRewritten = 10'000;

/// Deletes every second entry of a list that is on show, to the new file on the disk.
void RewriteList(benchmark::State& state) {
  UrlList world;
  const std::string text = posix::NewHive(posix::HiveRoot::User, "win64") + MakeListKey(kRewritten);
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    WriteFile(posix::PrefixRoot() / "user.reg", text);
    sync();
    posix::ForgetWorld();
    world.Fill();
    state.ResumeTiming();
    world.DeleteEverySecond();
    if (!posix::WriteBackChanges().empty() || world.Count() != kRewritten / 2)
      state.SkipWithError("the list wasn't rewritten");
  }
}
BENCHMARK(RewriteList)->UseRealTime()->Iterations(5)->Repetitions(5)->Unit(benchmark::kMillisecond);

/// One parse of the same hive, and as many bytes written as the rewrite leaves.
void ParseAndWrite(benchmark::State& state) {
  const UrlList world;
  const std::filesystem::path hive = posix::PrefixRoot() / "user.reg";
  const std::filesystem::path written = posix::PrefixRoot() / "written";
  WriteFile(hive, posix::NewHive(posix::HiveRoot::User, "win64") + MakeListKey(kRewritten));
  const std::string left =
      posix::NewHive(posix::HiveRoot::User, "win64") + MakeListKey(kRewritten / 2);
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(written);
    sync();
    state.ResumeTiming();
    const posix::HiveImage image(posix::ReadWholeFile(hive), {});
    const posix::FileDescriptor file(
        open(written.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (write(file.get(), left.data(), left.size()) != static_cast<ssize_t>(left.size()) ||
        fsync(file.get()) != 0)
      state.SkipWithError("the file can't be written");
  }
}
BENCHMARK(ParseAndWrite)
    ->UseRealTime()
    ->Iterations(5)
    ->Repetitions(5)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace torvane::benchmarks
