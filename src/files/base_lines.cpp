#include "files/base_lines.h"

#include <algorithm>

namespace velkor {

std::optional<uint32_t> BaseLines::Earlier(const SpecLineParser& line) const {
  for (const StkFunction* clone : line.Clones()) {
    if (const auto found = lineOf_.find(clone); found != lineOf_.end()) {
      return lines_[found->second].stated.line;
    }
  }
  return std::nullopt;
}

void BaseLines::Take(const SpecLineParser& line, uint32_t number, std::string_view text) {
  if (line.Clones().empty() && functions_.Clones().Of(*line.Function()).empty()) {
    return;
  }
  Line& taken = LineOf(line);
  taken.name = line.Name();
  taken.text = text;
  // Of several lines on one function, only one may state more than callees.
  const bool adjusts = line.Margin() != kNoMargin || line.Depth() != kNoDepth;
  if (adjusts) {
    taken.stated.margin = line.Margin();
    taken.stated.depth = line.Depth();
  }
  taken.stated.line = adjusts || taken.stated.line == 0 ? number : taken.stated.line;
  StkFunctionList callees = taken.stated.callees.value_or(StkFunctionList());
  callees.insert(callees.end(), line.Callees().begin(), line.Callees().end());
  callees.insert(callees.end(), line.DirectCallees().begin(), line.DirectCallees().end());
  taken.stated.callees = std::move(callees);
}

void BaseLines::TakeName(const SpecLineParser& line) {
  const StkFunction* function = line.Function();
  if (function != nullptr && line.Clones().empty() && function->Is(FN_CLONE)) {
    named_.insert(function);
  }
}

BaseLines::Line& BaseLines::LineOf(const SpecLineParser& line) {
  const bool isGone = !line.Clones().empty();
  const StkFunctionList& clones = isGone ? line.Clones() : functions_.Clones().Of(*line.Function());
  const auto known = lineOf_.find(clones.front());
  if (known != lineOf_.end()) {
    return lines_[known->second];
  }
  for (const StkFunction* clone : clones) {
    lineOf_[clone] = lines_.size();
  }
  Line& added = lines_.emplace_back();
  added.base = isGone ? nullptr : line.Function();
  added.clones = clones;
  return added;
}

const BaseLines::Line* BaseLines::LineFor(const StkFunction& clone) const {
  const auto found = lineOf_.find(&clone);
  return found == lineOf_.end() || IsNamed(clone) ? nullptr : &lines_[found->second];
}

bool BaseLines::HoldsForNone(const Line& line) const {
  return line.base == nullptr && std::ranges::all_of(line.clones, [this](const StkFunction* clone) {
           return IsNamed(*clone);
         });
}

}  // namespace velkor
