#include <benchmark/benchmark.h>
#include <cstdint>
#include <malloc.h>
#include <memory>
#include <random>
#include <string>

#include "core/adjustments.h"
#include "core/function_table.h"
#include "core/recompute.h"

namespace velkor {
namespace {

class SilentBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(std::string_view, BoxIcon, BoxButtons) override { return BoxAnswer::kOk; }
};

size_t HeapInUse() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

// A database made in the way of the module reader: names, then the resolution of all calls.
struct Database {
  explicit Database(uint32_t count) : count_(count) {
    for (uint32_t i = 0; i < count; ++i) {
      StkFunction& function = functions.AddDefined(Name(i), files.Intern("C:\\p\\a.c"));
      function.flags |= FN_GLOBAL;
      function.frameSize = 1 + i % 7;
    }
  }

  std::string Name(uint32_t index) const { return "_function" + std::to_string(index); }
  void Call(uint32_t caller, uint32_t callee) {
    functions.Functions()[caller]->AddCallName(Name(callee));
  }
  void Finish() {
    functions.ResolveAllCalls();
    heapUsed_ = HeapInUse() - heapBefore_;
  }
  void Compute(bool rebuild) { Recompute(functions, roots, rebuild, nullptr, nullptr, reporter); }
  double BytesPerFunction() const { return static_cast<double>(heapUsed_) / count_; }

  CodePage codePage = CodePage::Utf8();
  StkMessages messages = StkMessages::English(codePage);
  SilentBoxes boxes;
  StkReporter reporter{messages, boxes};

 private:
  uint32_t count_;
  size_t heapBefore_ = HeapInUse();
  size_t heapUsed_ = 0;

 public:
  StkFileTable files{codePage};
  StkFunctionTable functions{codePage};
  StkRootList roots;
};

std::unique_ptr<Database> Chain(uint32_t count) {
  auto database = std::make_unique<Database>(count);
  for (uint32_t i = 0; i + 1 < count; ++i) {
    database->Call(i, i + 1);
  }
  return database;
}

std::unique_ptr<Database> Ring(uint32_t count) {
  std::unique_ptr<Database> database = Chain(count);
  database->Call(count - 1, 0);
  return database;
}

// Four calls a function to any other, so that most functions are in one recursion.
std::unique_ptr<Database> Random(uint32_t count) {
  auto database = std::make_unique<Database>(count);
  std::mt19937 random(1);
  for (uint32_t call = 0; call < 4 * count; ++call) {
    const auto caller = static_cast<uint32_t>(random() % count);
    database->Call(caller, static_cast<uint32_t>(random() % count));
  }
  return database;
}

// Four calls a function to any of those after it: no recursion.
std::unique_ptr<Database> Layered(uint32_t count) {
  auto database = std::make_unique<Database>(count);
  std::mt19937 random(2);
  for (uint32_t call = 0; call < 4 * count; ++call) {
    const auto caller = static_cast<uint32_t>(random() % (count - 1));
    database->Call(caller, caller + 1 + static_cast<uint32_t>(random() % (count - 1 - caller)));
  }
  return database;
}

using Generator = std::unique_ptr<Database> (*)(uint32_t count);

void Run(benchmark::State& state, Generator generate, bool rebuild) {
  const std::unique_ptr<Database> database = generate(static_cast<uint32_t>(state.range(0)));
  database->Finish();
  database->Compute(true);
  for (auto _ : state) {
    database->Compute(rebuild);
  }
  state.counters["bytes/function"] = database->BytesPerFunction();
}

void Rebuild(benchmark::State& state, Generator generate) {
  Run(state, generate, true);
}
void TotalsOnly(benchmark::State& state, Generator generate) {
  Run(state, generate, false);
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(250000)->Arg(500000)->Arg(1000000)->Unit(benchmark::kMillisecond);
}
void Largest(benchmark::internal::Benchmark* bench) {
  bench->Arg(1000000)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(Rebuild, chain, Chain)->Apply(Sizes);
BENCHMARK_CAPTURE(Rebuild, ring, Ring)->Apply(Sizes);
BENCHMARK_CAPTURE(Rebuild, random, Random)->Apply(Sizes);
BENCHMARK_CAPTURE(Rebuild, layered, Layered)->Apply(Sizes);
BENCHMARK_CAPTURE(TotalsOnly, random, Random)->Apply(Largest);
BENCHMARK_CAPTURE(TotalsOnly, layered, Layered)->Apply(Largest);

}  // namespace
}  // namespace velkor

BENCHMARK_MAIN();
