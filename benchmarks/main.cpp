// The benchmarks of windows need the platform's toolkit; it starts before any of them.
#include <benchmark/benchmark.h>

#include <memory>

#include "platform_toolkit.h"
#include "support/scratch_world.h"

namespace torvane::benchmarks {
namespace {

std::unique_ptr<Toolkit> toolkit;

/// A prefix for the toolkit to start on.
class StartWorld : public testing::ScratchWorld {
  void TestBody() override {}
};

int Run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const StartWorld world;
  toolkit = MakePlatformToolkit(argc, argv);
  SetToolkit(toolkit.get());
  if (!toolkit->Start()) return 1;
  benchmark::RunSpecifiedBenchmarks();
  toolkit.reset();
  return 0;
}

}  // namespace

Toolkit& PlatformToolkit() {
  return *toolkit;
}

}  // namespace torvane::benchmarks

int main(int argc, char** argv) {
  return torvane::benchmarks::Run(argc, argv);
}
