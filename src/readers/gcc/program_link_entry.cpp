#include <algorithm>
#include <tuple>

#include "readers/gcc/program_link.h"
#include "readers/gcc/symbol_name.h"
#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

bool IsAbsolute(std::string_view path) {
  return path.starts_with('/') || path.starts_with('\\') || path.substr(0, 2).ends_with(':');
}

}  // namespace

// The sources, as far as they are told apart; else with the folder in which the compiler left the
// call graph before them, and at last with the whole path of that.
void ProgramLink::NameModules() {
  std::vector<std::string> names;
  for (const Unit& unit : units_) {
    names.push_back(unit.title);
  }
  for (const bool withFolder : {true, false}) {
    std::unordered_map<std::string, uint32_t> counts;
    for (const std::string& name : names) {
      ++counts[name];
    }
    for (size_t i = 0; i < names.size(); ++i) {
      if (counts[names[i]] == 1) {
        continue;
      }
      const Unit& unit = units_[i];
      const std::string_view folder =
          std::string_view(unit.path).substr(0, unit.path.find_last_of('/') + 1);
      const std::string_view title =
          IsAbsolute(unit.title) ? LastComponent(unit.title) : std::string_view(unit.title);
      names[i] = withFolder ? std::string(folder).append(title)
                            : std::string(unit.path).append("/").append(LastComponent(title));
    }
  }
  for (const std::string& name : names) {
    moduleFiles_.push_back(&database_->files.Add(name));
  }
}

// A partition of a link has functions of many sources.
const StkFileEntry& ProgramLink::ModuleFile(uint32_t part) {
  const uint32_t unit = unitOfPart_[part];
  const uint32_t file = units_[unit].isLinkTime ? FunctionOf(part).file : kNone;
  if (file == kNone) {
    return *moduleFiles_[unit];
  }
  const StkFileEntry*& entry = linkTimeFiles_[file];
  if (entry == nullptr) {
    entry = SourceFile(file);
  }
  return *entry;
}

const StkFileEntry* ProgramLink::SourceFile(uint32_t file) {
  if (file == kNone) {
    return nullptr;
  }
  sourceFiles_.resize(files_.size());
  if (sourceFiles_[file] == nullptr) {
    sourceFiles_[file] = &database_->files.Add(files_[file]);
  }
  return sourceFiles_[file];
}

void ProgramLink::EnterFunctions() {
  StkFunctionTable& table = database_->functions;
  indexOf_.assign(entities_.size() + outside_.size(), kNone);
  for (uint32_t i = 0; i < entities_.size(); ++i) {
    const Entity& entity = entities_[i];
    if (!entity.isKept) {
      continue;
    }
    const UnitRecording::Function& function = FunctionOf(entity.firstPart);
    StkFunction& entered = table.AddDefined(function.name, ModuleFile(entity.firstPart));
    indexOf_[i] = entered.index;
    entered.source = function.source;
    entered.frameSize = entity.frameSize;
    entered.Told().place = {.file = SourceFile(function.file), .line = function.line};
    entered.flags |= entity.isGlobal ? uint32_t{FN_GLOBAL} : 0U;
    entered.flags |= entity.isDynamic ? uint32_t{FN_DYNAMIC_FRAME} : 0U;
    entered.flags |= entity.isSizeUnknown ? uint32_t{FN_SIZE_UNKNOWN} : 0U;
    entered.flags |= entity.isEntry ? uint32_t{FN_ENTRY} : 0U;
    entered.flags |= entity.isAddressTaken ? uint32_t{FN_ADDRESS_TAKEN} : 0U;
    entered.flags |= hasSites_[i] ? uint32_t{FN_INDIRECT_CALL} : 0U;
    EnterCodeOf(entity, entered);
    // Its code is that of what it calls.
    entered.flags |= function.isAlias ? uint32_t{FN_NO_FLOATING_POINT} : 0U;
    entered.flags |= CallsThroughTable(i) ? uint32_t{FN_TABLE_CALLS} : 0U;
    if (function.shownName != kNone) {
      table.SetShownName(entered, function.shownName);
    }
    if (!CloneBase(entered.name).empty()) {
      clones_.push_back(&entered);
    }
  }
}

// A function of another file is the base only where the source shows that: every file may have its
// own one of a name.
void ProgramLink::EnterClones() {
  StkFunctionTable& table = database_->functions;
  for (StkFunction* clone : clones_) {
    const std::string symbol(CloneBase(clone->name));
    StkFunction* base = table.FindCallee(*clone, symbol);
    if (base != nullptr && base->Is(FN_DEFINED) && AreOfOneSource(*clone, *base)) {
      table.Clones().Add(*clone, *base);
      continue;
    }
    table.Clones().AddOfGone(*clone, table.NumberOfName(symbol));
    if (const std::string shown = DemangledName(symbol); !shown.empty()) {
      table.Clones().AddOfGone(*clone, table.NumberOfName(shown));
    }
  }
}

// In the order of their first call, if what calls them is kept.
void ProgramLink::EnterOutside() {
  uint32_t call = 0;
  for (uint32_t entity = 0; entity < entities_.size(); ++entity) {
    for (; call < calleeEnds_[entity]; ++call) {
      if (entities_[entity].isKept && IsOutside(callees_[call])) {
        UseOutside(callees_[call] - static_cast<uint32_t>(entities_.size()));
      }
    }
  }
  for (uint32_t i = 0; i < outside_.size(); ++i) {
    if (outside_[i].isEntry || outside_[i].isPointed) {
      UseOutside(i);
    }
  }
  StkFunctionTable& table = database_->functions;
  for (uint32_t i = 0; i < outside_.size(); ++i) {
    const Outside& outside = outside_[i];
    if (!outside.isUsed) {
      continue;
    }
    const bool isOfEntity =
        outside.target != kNone && !IsOutside(outside.target) && indexOf_[outside.target] != kNone;
    const bool isAlias = isOfEntity || (outside.target != kNone && IsOutside(outside.target));
    const bool isDefined = isAlias || outside.code != kNone;
    StkFunction& entered =
        isOfEntity ? table.AddDefined(outside.name, ModuleFile(entities_[outside.target].firstPart))
        : isDefined ? table.AddDefined(outside.name, FileOfCode(outside.code))
                    : table.AddUnknown(outside.name);
    entered.flags |= outside.isEntry ? uint32_t{FN_ENTRY} : 0U;
    if (isAlias) {
      entered.flags |= FN_GLOBAL | FN_NO_FLOATING_POINT;
      entered.source = FunctionSource::kProgram;
    } else if (isDefined) {
      EnterOutsideCode(outside, entered);
      entered.flags |= tableOf_.contains(outside.name) ? uint32_t{FN_TABLE_CALLS} : 0U;
    }
    indexOf_[entities_.size() + i] = entered.index;
    if (const std::string shown = DemangledName(entered.name); !shown.empty()) {
      table.SetShownName(entered, table.NumberOfName(shown));
    }
  }
}

// In the order of the table: entities, then the others.
void ProgramLink::EnterCalls() {
  ResolvedCalls calls;
  calls.callees.reserve(callees_.size());
  uint32_t call = 0;
  for (uint32_t entity = 0; entity < entities_.size(); ++entity) {
    for (; call < calleeEnds_[entity]; ++call) {
      if (entities_[entity].isKept && indexOf_[callees_[call]] != kNone) {
        calls.callees.push_back(indexOf_[callees_[call]]);
      }
    }
    if (entities_[entity].isKept) {
      calls.ends.push_back(static_cast<uint32_t>(calls.callees.size()));
    }
  }
  for (uint32_t i = 0; i < outside_.size(); ++i) {
    if (indexOf_[entities_.size() + i] != kNone) {
      const uint32_t begin = i == 0 ? 0 : outsideCalleeEnds_[i - 1];
      for (uint32_t callee = begin; callee < outsideCalleeEnds_[i]; ++callee) {
        if (const uint32_t index = indexOf_[outsideCallees_[callee]]; index != kNone) {
          calls.callees.push_back(index);
        }
      }
      calls.ends.push_back(static_cast<uint32_t>(calls.callees.size()));
    }
  }
  database_->functions.SetAllCalls(calls);
}

void ProgramLink::EnterSites() {
  const auto order = [](const SourceLine& place) {
    return std::tuple(
        place.file == nullptr ? std::string_view() : std::string_view(place.file->name), place.line,
        place.column);
  };
  std::vector<StkFunction*> shared;
  for (const Unit& unit : units_) {
    for (const UnitRecording::IndirectSite& site : unit.sites) {
      const uint32_t index = indexOf_[entityOfPart_[unit.firstPart + site.function]];
      if (index == kNone) {
        continue;
      }
      StkFunction& function = *database_->functions.Functions()[index];
      std::vector<IndirectSite>& sites = function.Told().indirectSites;
      if (sites.empty()) {
        shared.push_back(&function);
      }
      sites.push_back({{SourceFile(site.file), site.line, site.column}});
    }
  }
  for (StkFunction* function : shared) {
    std::vector<IndirectSite>& sites = function->told->indirectSites;
    std::ranges::stable_sort(sites, {}, order);
    const auto same = [&](const SourceLine& left, const SourceLine& right) {
      return order(left) == order(right);
    };
    sites.erase(std::unique(sites.begin(), sites.end(), same), sites.end());
    sites.shrink_to_fit();
  }
}

void ProgramLink::PostNotes(StkReporter& reporter) {
  for (Unit& unit : units_) {
    for (StkNote& note : unit.notes) {
      if (note.function) {
        if (unit.isCovered) {
          continue;
        }
        const uint32_t index = indexOf_[entityOfPart_[unit.firstPart + *note.function]];
        if (index == kNone) {
          continue;
        }
        note.function = index;
      }
      if (note.rule != "assembler" || !IsReadFromCode(unit)) {
        reporter.PostNote(std::move(note));
      }
    }
  }
}

}  // namespace velkor
