#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/analysis.h"
#include "reports/gate/gate.h"
#include "support/memory_files.h"

namespace velkor::testing {

// A program from a few lines (see Graph) under the gate of a velkor.toml, in memory.
struct GateCase {
  static constexpr const char* kPath = "/r/fw/velkor.toml";

  explicit GateCase(std::string_view graph) : analysis(graph) { files.Put("/r/.git/HEAD", ""); }

  uint32_t IndexOf(std::string_view function) { return analysis.graph[function].index; }
  // A word of the vector table.
  void AddHandler(const std::string& function, std::vector<std::string> names = {}) {
    facts.hasProgram = true;
    facts.hasVectors = true;
    names.push_back(function);
    facts.handlers.push_back({IndexOf(function), std::move(names)});
  }

  // What it comes to; empty, after the test has failed, where there are faults.
  reports::GateReport Check(const std::string& toml, const reports::Baseline* baseline = nullptr) {
    reports::GateOutcome outcome = Ask(toml, baseline);
    for (const reports::GateFault& fault : outcome.faults) {
      ADD_FAILURE() << fault.place.line << ": " << fault.text;
    }
    return outcome.report.value_or(reports::GateReport());
  }
  reports::GateOutcome Ask(const std::string& toml, const reports::Baseline* baseline = nullptr) {
    const ReadConfigurationResult read = ReadConfiguration("input = \"in\"\n" + toml);
    for (const ConfigurationFault& fault : read.faults) {
      ADD_FAILURE() << fault.place.line << ": " << fault.text;
    }
    const Configuration configuration = read.configuration.value_or(Configuration());
    std::vector<std::string> entries;
    for (const reports::StackLimit& limit : limits) {
      entries.push_back(limit.entry);
    }
    const reports::NameMeanings names =
        reports::MeaningsOf(configuration, entries, analysis.graph.functions);
    result = analysis.Result();
    const CodePage page = CodePage::Utf8();
    reports::SourcePlaces sources(files, page, kPath, {});
    return reports::CheckGate({.result = *result,
                               .configuration = configuration,
                               .facts = facts,
                               .names = names,
                               .limits = limits,
                               .isConfigured = isConfigured},
                              baseline, sources);
  }
  // "2:1 what is wrong" of each fault.
  std::vector<std::string> Faults(const std::string& toml) {
    std::vector<std::string> lines;
    for (const reports::GateFault& fault : Ask(toml).faults) {
      lines.push_back(std::to_string(fault.place.line) + ":" + std::to_string(fault.place.column) +
                      " " + fault.text);
    }
    return lines;
  }
  reports::Baseline BaselineOf(const std::string& toml) {
    const reports::GateReport report = Check(toml);
    return reports::BaselineOf(report, *result, "fw/velkor.toml", "");
  }

  Analysis analysis;
  ProgramFacts facts;
  MemoryFileSystem files;
  std::vector<reports::StackLimit> limits;
  bool isConfigured = true;
  std::optional<reports::AnalysisResult> result;
};

// "ok 120 of 200", with ">=" where there is no bound.
inline std::string Line(const reports::GateStack& stack) {
  return std::string(reports::StackStateName(stack.state)) + (stack.bounded ? " " : " >=") +
         std::to_string(stack.known) + " of " +
         (stack.size ? std::to_string(*stack.size) : std::string("?"));
}
inline std::vector<std::string> StackLines(const reports::GateReport& report) {
  std::vector<std::string> lines;
  for (const reports::GateStack& stack : report.stacks) {
    uint64_t sum = 0;
    for (const reports::StackRow& row : stack.rows) {
      sum += row.bytes;
    }
    EXPECT_EQ(sum, stack.known) << stack.name;
    lines.push_back(stack.name + " " + Line(stack));
  }
  return lines;
}
// "error over-budget: the text" of each.
inline std::vector<std::string> FindingLines(const reports::GateReport& report) {
  std::vector<std::string> lines;
  for (const reports::Finding& finding : report.findings) {
    lines.push_back(std::string(reports::SeverityName(finding.severity)) + " " + finding.rule +
                    ": " + finding.text);
  }
  return lines;
}

}  // namespace velkor::testing
