#pragma once

#include <string_view>

namespace velkor::testing {

// A fuzzer takes any bytes, gives them to a part of the engine and checks what must hold whatever
// they are (Require). Its work is bounded by the input's length.
using Fuzzer = void (*)(std::string_view bytes);

void FuzzProject(std::string_view bytes);
void FuzzModule(std::string_view bytes);
void FuzzSpec(std::string_view bytes);
void FuzzPath(std::string_view bytes);
void FuzzGraph(std::string_view bytes);
void FuzzAnalysis(std::string_view bytes);
void FuzzCallGraph(std::string_view bytes);
void FuzzElf(std::string_view bytes);
void FuzzCode(std::string_view bytes);
void FuzzConfiguration(std::string_view bytes);
void FuzzBaseline(std::string_view bytes);

struct NamedFuzzer {
  std::string_view name;  // of its program, its dictionary and its folder of the corpus
  Fuzzer fuzzer;
};

inline constexpr NamedFuzzer kFuzzers[] = {{"project", FuzzProject},
                                           {"module", FuzzModule},
                                           {"spec", FuzzSpec},
                                           {"path", FuzzPath},
                                           {"graph", FuzzGraph},
                                           {"analysis", FuzzAnalysis},
                                           {"callgraph", FuzzCallGraph},
                                           {"elf", FuzzElf},
                                           {"configuration", FuzzConfiguration},
                                           {"code", FuzzCode},
                                           {"baseline", FuzzBaseline}};

}  // namespace velkor::testing
