#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <malloc.h>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "core/adjustments.h"
#include "core/bounds.h"
#include "core/function_sorting.h"
#include "core/function_table.h"
#include "core/recompute.h"

namespace velkor {
namespace {

class SilentBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const StkMessage&, BoxIcon, BoxButtons) override { return BoxAnswer::kOk; }
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
      function.frameSize = 8 + i % 61;
    }
  }

  std::string Name(uint32_t index) const { return "_function" + std::to_string(index); }
  void Call(uint32_t caller, uint32_t callee) {
    functions.AddCallName(*functions.Functions()[caller], Name(callee));
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
    database->Call(call / 4, static_cast<uint32_t>(random() % count));
  }
  return database;
}

// Four calls a function to any of those after it: no recursion.
std::unique_ptr<Database> Layered(uint32_t count) {
  auto database = std::make_unique<Database>(count);
  std::mt19937 random(2);
  for (uint32_t call = 0; call < 4 * (count - 1); ++call) {
    const uint32_t caller = call / 4;
    database->Call(caller, caller + 1 + static_cast<uint32_t>(random() % (count - 1 - caller)));
  }
  return database;
}

// Rings of ten functions, each of which calls into the next ring.
std::unique_ptr<Database> ChainOfRings(uint32_t count) {
  constexpr uint32_t kRing = 10;
  auto database = std::make_unique<Database>(count);
  for (uint32_t i = 0; i < count; ++i) {
    database->Call(i, (i + 1) % kRing != 0 ? i + 1 : i + 1 - kRing);
    if (i + kRing < count) {
      database->Call(i, i + kRing);
    }
  }
  return database;
}

// One function that all others call.
std::unique_ptr<Database> Shared(uint32_t count) {
  auto database = std::make_unique<Database>(count);
  for (uint32_t i = 1; i < count; ++i) {
    database->Call(i, 0);
  }
  return database;
}

using Generator = std::unique_ptr<Database> (*)(uint32_t count);

void Rebuild(benchmark::State& state, Generator generate) {
  const std::unique_ptr<Database> database = generate(static_cast<uint32_t>(state.range(0)));
  database->Finish();
  database->Compute(true);
  for (auto _ : state) {
    database->Compute(true);
  }
  state.counters["bytes/function"] = database->BytesPerFunction();
}

// All bounds, beside Rebuild in the same run.
void Bounds(benchmark::State& state, Generator generate) {
  const std::unique_ptr<Database> database = generate(static_cast<uint32_t>(state.range(0)));
  database->Finish();
  database->Compute(true);
  for (auto _ : state) {
    StkBounds(database->functions).Update();
  }
}

// The time of each of many like operations, told as counters.
class Times {
 public:
  template <typename Operation>
  void Take(Operation operation) {
    const auto start = std::chrono::steady_clock::now();
    operation();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    milliseconds_.push_back(took.count());
  }
  void Tell(benchmark::State& state) {
    std::ranges::sort(milliseconds_);
    state.counters["median_ms"] = At(50);
    state.counters["p99_ms"] = At(99);
    state.counters["most_ms"] = At(100);
  }

 private:
  double At(size_t percent) const {
    return milliseconds_[(milliseconds_.size() - 1) * percent / 100];
  }

  std::vector<double> milliseconds_;
};

// One adjustment after another, each of any function. shown: as the window does it, with the
// warnings about what is over the limit and the bounds; else only the totals.
void OneMargin(benchmark::State& state, Generator generate, bool shown) {
  const auto count = static_cast<uint32_t>(state.range(0));
  const std::unique_ptr<Database> database = generate(count);
  database->Finish();
  database->Compute(true);
  StkBounds bounds(database->functions);
  bounds.Update();
  std::mt19937 random(3);
  Times times;
  for (auto _ : state) {
    StkAdjustment adjustment;
    adjustment.margin = static_cast<uint32_t>(random() % 100);
    StkFunction& function = *database->functions.Functions()[random() % count];
    times.Take([&] {
      if (shown) {
        AdjustFunction(database->functions, database->roots, function, adjustment,
                       database->reporter);
        bounds.Update();
      } else {
        database->functions.SetPendingAdjustment(function, std::move(adjustment));
        database->Compute(false);
      }
    });
  }
  times.Tell(state);
}

// A callee is stated of any function, and taken away again, as the window does it.
void OneCallee(benchmark::State& state, Generator generate) {
  const auto count = static_cast<uint32_t>(state.range(0));
  const std::unique_ptr<Database> database = generate(count);
  database->Finish();
  database->Compute(true);
  StkBounds bounds(database->functions);
  bounds.Update();
  database->functions.Callers(0);  // asked for once, after the analysis
  const StkFunctionList& functions = database->functions.Functions();
  std::mt19937 random(4);
  StkFunction* adjusted = nullptr;
  Times times;
  for (auto _ : state) {
    StkAdjustment adjustment;
    adjustment.SetCallees({functions[random() % count]}, database->codePage);
    StkFunction* caller = functions[random() % count];
    times.Take([&] {
      if (adjusted == nullptr) {
        adjusted = caller;
        AdjustFunction(database->functions, database->roots, *caller, adjustment,
                       database->reporter);
      } else {
        CancelAdjustment(database->functions, database->roots, *adjusted, database->reporter);
        adjusted = nullptr;
      }
      bounds.Update();
    });
  }
  times.Tell(state);
}

// From the collected call names to linked functions.
void Resolve(benchmark::State& state, Generator generate) {
  for (auto _ : state) {
    state.PauseTiming();
    std::unique_ptr<Database> database = generate(static_cast<uint32_t>(state.range(0)));
    state.ResumeTiming();
    database->Finish();
    state.PauseTiming();
    database.reset();
    state.ResumeTiming();
  }
}

// The names and call names as a reader hands them over.
void Collect(benchmark::State& state, Generator generate) {
  for (auto _ : state) {
    std::unique_ptr<Database> database = generate(static_cast<uint32_t>(state.range(0)));
    state.PauseTiming();
    database.reset();
    state.ResumeTiming();
  }
}

void SortAll(benchmark::State& state, Generator generate) {
  const std::unique_ptr<Database> database = generate(static_cast<uint32_t>(state.range(0)));
  for (auto _ : state) {
    StkFunctionList all = database->functions.Functions();
    SortByName(all, database->codePage);
    benchmark::DoNotOptimize(all);
  }
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
BENCHMARK_CAPTURE(Rebuild, chain_of_rings, ChainOfRings)->Apply(Sizes);
BENCHMARK_CAPTURE(Rebuild, shared, Shared)->Apply(Sizes);
BENCHMARK_CAPTURE(Bounds, ring, Ring)->Apply(Sizes);
BENCHMARK_CAPTURE(Bounds, random, Random)->Apply(Sizes);
BENCHMARK_CAPTURE(Bounds, chain_of_rings, ChainOfRings)->Apply(Sizes);
BENCHMARK_CAPTURE(OneMargin, layered, Layered, true)->Apply(Largest)->Iterations(2000);
BENCHMARK_CAPTURE(OneMargin, random, Random, false)->Apply(Largest)->Iterations(2000);
BENCHMARK_CAPTURE(OneCallee, layered, Layered)->Apply(Largest)->Iterations(200);
BENCHMARK_CAPTURE(OneCallee, chain, Chain)->Apply(Largest)->Iterations(40);
BENCHMARK_CAPTURE(OneCallee, random, Random)->Apply(Largest)->Iterations(40);
BENCHMARK_CAPTURE(Collect, random, Random)->Apply(Largest);
BENCHMARK_CAPTURE(Resolve, random, Random)->Apply(Largest);
BENCHMARK_CAPTURE(SortAll, random, Random)->Apply(Largest);

}  // namespace
}  // namespace velkor

BENCHMARK_MAIN();
