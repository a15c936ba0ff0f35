#include "files/spec_file_lines.h"

#include <algorithm>
#include <set>

#include "files/spec_language.h"

namespace velkor {

namespace {

std::set<const StkFunction*> AllCalleesOf(const KeptStatement& statement) {
  std::set<const StkFunction*> all(statement.callees.begin(), statement.callees.end());
  all.insert(statement.directCallees.begin(), statement.directCallees.end());
  return all;
}

uint32_t MarginOf(const KeptStatement& statement) {
  return statement.adjustment != nullptr ? statement.adjustment->margin : kNoMargin;
}

}  // namespace

std::vector<SpecFileLines::Line> SpecFileLines::Stated(std::vector<std::string>& keptLines) {
  lines_.clear();
  FindBaseLines();
  std::erase_if(keptLines, [this](const std::string& line) { return !TakeKept(line); });
  for (const StkFunction* function : table_.Functions()) {
    if (function->Is(FN_CLONE)) {
      AddClone(*function);
    } else if (IsStated(*function)) {
      lines_.push_back({.function = function, .goneBase = {}, .depth = DepthOfBase(*function)});
    }
  }
  return std::move(lines_);
}

std::vector<SpecFileLines::Line> SpecFileLines::Unknown() const {
  std::vector<Line> lines;
  for (const StkFunction* function : table_.Functions()) {
    if (function->IsUnknown() && Statement(*function).None()) {
      lines.push_back({.function = function, .goneBase = {}, .depth = kNoDepth});
    }
  }
  return lines;
}

void SpecFileLines::FindBaseLines() {
  for (const StkFunction* function : table_.Functions()) {
    if (function->Is(FN_CLONE) && !OfClone(*function).isOwn &&
        !OfClone(*function).baseLine.empty()) {
      AddBaseLine(*function, OfClone(*function).baseLine);
    }
  }
}

bool SpecFileLines::TakeKept(const std::string& line) {
  const SpecName name = SpecLineScanner(line, table_.GetCodePage()).TakeName();
  if (const StkFunction* named = names_.Find(name)) {
    namedByKept_.insert(named);
    return true;
  }
  const StkFunctionList clones = names_.FindClones(name).clones;
  const bool isReplaced = std::ranges::any_of(
      clones, [this](const StkFunction* clone) { return underBaseLine_.contains(clone); });
  underKept_.insert(clones.begin(), clones.end());
  return !isReplaced;
}

void SpecFileLines::AddBaseLine(const StkFunction& clone, const std::string& name) {
  BaseLine& line = baseLines_[name];
  if (line.first == nullptr) {
    line.first = &clone;
    const SpecName parts = SpecLineScanner(name, table_.GetCodePage()).TakeName();
    const StkFunctionList clones = names_.FindClones(parts).clones;
    underBaseLine_.insert(clones.begin(), clones.end());
  }
  line.depth = std::max(line.depth, DepthOf(clone));
}

void SpecFileLines::AddClone(const StkFunction& clone) {
  const CloneStatement& ofClone = OfClone(clone);
  const StkFunction* base = table_.Clones().BaseOf(clone);
  if (!ofClone.isOwn && base != nullptr && IsSaid(clone, *base, DepthOfBase(*base))) {
    return;
  }
  if (!ofClone.isOwn && !ofClone.baseLine.empty()) {
    const BaseLine& line = baseLines_.at(ofClone.baseLine);
    if (line.first == &clone) {
      lines_.push_back({.function = &clone, .goneBase = ofClone.baseLine, .depth = line.depth});
      return;
    }
    if (IsSaid(clone, *line.first, line.depth)) {
      return;
    }
  }
  if (!Statement(clone).None() || WouldFollow(clone)) {
    lines_.push_back({.function = &clone, .goneBase = {}, .depth = DepthOf(clone)});
  }
}

bool SpecFileLines::IsSaid(const StkFunction& clone, const StkFunction& base,
                           uint32_t depth) const {
  const KeptStatement ofClone = Statement(clone);
  const KeptStatement ofBase = Statement(base);
  return ofClone.None() == ofBase.None() && MarginOf(ofClone) == MarginOf(ofBase) &&
         (DepthOf(clone) == kNoDepth || DepthOf(clone) == depth) &&
         AllCalleesOf(ofClone) == AllCalleesOf(ofBase);
}

// A line that says something of its base would hold for it.
bool SpecFileLines::WouldFollow(const StkFunction& clone) {
  if (namedByKept_.contains(&clone)) {
    return false;
  }
  const StkFunction* base = table_.Clones().BaseOf(clone);
  return base != nullptr ? IsStated(*base)
                         : underBaseLine_.contains(&clone) || underKept_.contains(&clone);
}

// Of a base whose depth only clones had, nothing may be left.
bool SpecFileLines::IsStated(const StkFunction& function) const {
  const KeptStatement statement = Statement(function);
  return !statement.None() &&
         (table_.Clones().Of(function).empty() || MarginOf(statement) != kNoMargin ||
          DepthOfBase(function) != kNoDepth || !AllCalleesOf(statement).empty());
}

uint32_t SpecFileLines::DepthOfBase(const StkFunction& base) const {
  uint32_t depth = DepthOf(base);
  if (depth == kNoDepth) {
    for (const StkFunction* clone : table_.Clones().Of(base)) {
      depth = std::max(depth, OfClone(*clone).isOwn ? kNoDepth : DepthOf(*clone));
    }
  }
  return depth;
}

uint32_t SpecFileLines::DepthOf(const StkFunction& function) const {
  const KeptStatement statement = Statement(function);
  return statement.adjustment != nullptr ? statement.adjustment->depth : kNoDepth;
}

}  // namespace velkor
