// Looking through a large hive for the lists in it.
#include <benchmark/benchmark.h>

#include <chrono>
#include <thread>

#include "big_hive.h"
#include "finding/list_finder.h"
#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/winapi.h"

namespace torvane::benchmarks {
namespace {

constexpr std::size_t kSize = std::size_t{20} << 20;
constexpr int kKeys = 10'000;
constexpr int kKeysToAList = 500;

/// Keys of one size below Software, one in kKeysToAList a list.
std::string MakeKeys() {
  std::string text = posix::NewHive(posix::HiveRoot::User, "win64");
  for (int key = 0; key < kKeys; ++key) {
    const std::size_t end = kSize / kKeys * (static_cast<std::size_t>(key) + 1);
    const bool isList = key % kKeysToAList == 0;
    text += "\n[Software\\\\Vendor" + std::to_string(key % 100) + "\\\\Program" +
            std::to_string(key) + (isList ? "\\\\Recent File List" : "\\\\Settings") +
            "] 1700000000\n#time=1da0123456789ab\n";
    for (int value = 1; text.size() < end; ++value) {
      const std::string number = std::to_string(value);
      text += isList
                  ? "\"File" + number + "\"=\"C:\\\\Users\\\\ada\\\\letter " + number + ".txt\"\n"
                  : "\"Option" + number + "\"=dword:0000000a\n";
    }
  }
  return text;
}

void FindLists(benchmark::State& state) {
  UrlList world;
  WriteFile(posix::PrefixRoot() / "user.reg", MakeKeys());
  // A file that has only just been written is read again at every look.
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    posix::ForgetWorld();
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, u"Software", 0, KEY_QUERY_VALUE, &key) == ERROR_SUCCESS)
      RegCloseKey(key);
    state.ResumeTiming();
    ListFinder finder({});
    while (!finder.Look(std::chrono::hours(1))) {
    }
    if (std::move(finder).Lists().size() != kKeys / kKeysToAList)
      state.SkipWithError("other lists were found");
  }
}
BENCHMARK(FindLists)->Iterations(5)->Repetitions(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace torvane::benchmarks
