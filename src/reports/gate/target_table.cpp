#include "reports/gate/target_table.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <toml++/toml.h>

namespace velkor::embedded {
extern const std::string_view targetTable;
}  // namespace velkor::embedded

namespace velkor::reports {
namespace {

std::vector<std::string> Texts(const toml::table& table, std::string_view key) {
  std::vector<std::string> texts;
  if (const toml::array* array = table[key].as_array()) {
    for (const toml::node& each : *array) {
      texts.push_back(each.value_or(std::string()));
    }
  }
  return texts;
}

template <typename Take>
void ForEachTable(const toml::table& root, std::string_view key, Take take) {
  if (const toml::array* array = root[key].as_array()) {
    for (const toml::node& each : *array) {
      take(*each.as_table());
    }
  }
}

StackFigure FigureOf(const toml::table& table) {
  StackFigure figure;
  figure.bytes = table["bytes"].value_or(uint32_t{0});
  figure.withoutFloatingPoint = table["without-floating-point"].value<uint32_t>();
  figure.source = table["source"].value_or(std::string());
  return figure;
}

bool Fits(std::string_view pattern, std::string_view target) {
  return pattern.ends_with('*') ? target.starts_with(pattern.substr(0, pattern.size() - 1))
                                : target == pattern;
}

}  // namespace

const TargetTable& TargetTable::BuiltIn() {
  static const TargetTable kTable(embedded::targetTable);
  return kTable;
}

TargetTable::TargetTable(std::string_view text) {
  const toml::table root = toml::parse(text);
  ForEachTable(root, "frame", [this](const toml::table& table) {
    entries_.push_back({"", Texts(table, "targets"), FigureOf(table)});
  });
  ForEachTable(root, "switch", [this](const toml::table& table) {
    entries_.push_back(
        {table["rtos"].value_or(std::string()), Texts(table, "targets"), FigureOf(table)});
  });
  ForEachTable(root, "rtos", [this](const toml::table& table) {
    rtos_.push_back({table["name"].value_or(std::string()), Texts(table, "objects")});
  });
}

const StackFigure* TargetTable::Frame(std::string_view target) const {
  return target.empty() ? nullptr : Find(target, "");
}

const StackFigure* TargetTable::Switch(std::string_view target, std::string_view rtos) const {
  return Find(target, rtos);
}

std::vector<std::string> TargetTable::KnownTargets() const {
  std::set<std::string> targets;
  for (const Entry& entry : entries_) {
    std::ranges::copy_if(entry.targets, std::inserter(targets, targets.end()),
                         [](const std::string& target) { return !target.ends_with('*'); });
  }
  return {targets.begin(), targets.end()};
}

const StackFigure* TargetTable::Find(std::string_view target, std::string_view rtos) const {
  const auto found = std::ranges::find_if(entries_, [&](const Entry& entry) {
    return entry.rtos == rtos && std::ranges::any_of(entry.targets, [&](std::string_view pattern) {
             return Fits(pattern, target);
           });
  });
  return found == entries_.end() ? nullptr : &found->figure;
}

}  // namespace velkor::reports
