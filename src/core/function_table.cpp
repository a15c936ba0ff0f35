#include "core/function_table.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string>
#include <utility>

#include "core/detail/components.h"
#include "core/detail/function_name_index.h"
#include "core/function_sorting.h"
#include "platform/fetch.h"
#include "platform/ordered_work.h"

namespace velkor {

namespace {

constexpr size_t kFetchedTogether = 16;  // names of calls
constexpr uint32_t kCallersTogether = 8;
constexpr uint32_t kNotFound = 0xFFFFFFFF;

}  // namespace

StkFunctionTable::StkFunctionTable(const CodePage& codePage, FunctionRules rules, size_t threads)
    : codePage_(codePage),
      rules_(rules),
      threads_(threads),
      nameIndex_(std::make_unique<FunctionNameIndex>(codePage, functions_)) {}

StkFunctionTable::~StkFunctionTable() = default;

StkFunction& StkFunctionTable::AddDefined(uint32_t name, const StkFileEntry& file) {
  StkFunction& added = Insert(name, &file, FN_DEFINED);
  added.source = FunctionSource::kModule;
  return added;
}

void StkFunctionTable::SetShownName(StkFunction& function, uint32_t name) {
  function.Told().shownName = names_[name];
  nameIndex_->AddShown(name, function.index);
}

StkFunction& StkFunctionTable::Insert(uint32_t name, const StkFileEntry* file, uint32_t flags) {
  StkFunction& inserted = blocks_.Append();
  inserted.name = names_[name];
  inserted.file = file;
  inserted.flags = flags | (rules_.underscored ? 0u : FN_PLAIN_SYMBOL);
  functions_.push_back(&inserted);
  nameIndex_->Append(name);
  if (!inserted.Is(FN_DEFINED)) {
    ++unknownCount_;
  }
  return inserted;
}

void StkFunctionTable::AddCallName(const StkFunction& caller, uint32_t callName) {
  callNames_.Add(caller.index, callName);
}

std::vector<std::string_view> StkFunctionTable::CallNames(const StkFunction& caller) const {
  std::vector<std::string_view> texts;
  for (const uint32_t name : callNames_.Of(caller.index)) {
    texts.push_back(names_[name]);
  }
  return texts;
}

StkFunction& StkFunctionTable::ResolveCall(const StkFunction& caller, std::string_view calleeName) {
  return ResolveCall(caller, names_.Intern(calleeName));
}

StkFunction& StkFunctionTable::ResolveCall(const StkFunction& caller, uint32_t calleeName) {
  StkFunction* callee = nameIndex_->FindCallee(calleeName, caller.file);
  return callee != nullptr ? *callee : Insert(calleeName, nullptr, 0);
}

StkFunction* StkFunctionTable::FindCallee(const StkFunction& caller, std::string_view calleeName) {
  return nameIndex_->FindCallee(names_.Find(calleeName), caller.file);
}

void StkFunctionTable::ResolveAllCalls() {
  const ResolvedCalls calls = ResolveCallees();
  callNames_.Clear();
  SetAllCalls(calls);
}

ResolvedCalls StkFunctionTable::ResolveCallees() {
  ResolvedCalls calls;
  const uint32_t callers = Count();
  calls.ends.reserve(callers);
  uint32_t count = 0;
  for (uint32_t caller = 0; caller < callers; ++caller) {
    count += static_cast<uint32_t>(callNames_.Of(caller).size());
    calls.ends.push_back(count);
  }
  calls.callees.resize(count);
  ForEachRange(callers, threads_,
               [&](uint32_t first, uint32_t end) { FindCallees(first, end, calls); });
  for (uint32_t caller = 0, call = 0; caller < callers; ++caller) {
    for (const uint32_t name : callNames_.Of(caller)) {
      uint32_t& callee = calls.callees[call++];
      callee = callee == kNotFound ? ResolveCall(*functions_[caller], name).index : callee;
    }
  }
  calls.ends.resize(Count(), count);  // unknown functions, which call nothing, were appended
  return calls;
}

void StkFunctionTable::FindCallees(uint32_t firstCaller, uint32_t endCaller,
                                   ResolvedCalls& calls) const {
  uint32_t call = calls.StartOf(firstCaller);
  std::span<const uint32_t> fetched;
  for (uint32_t caller = firstCaller; caller < endCaller; ++caller) {
    for (const uint32_t& name : callNames_.Of(caller)) {
      if (fetched.empty() || &name < &fetched.front() || &name > &fetched.back()) {
        fetched = callNames_.From(name, kFetchedTogether);
        nameIndex_->FetchCallees(fetched);
      }
      const StkFunction* callee = nameIndex_->FindCallee(name, functions_[caller]->file);
      calls.callees[call++] = callee != nullptr ? callee->index : kNotFound;
    }
  }
}

void StkFunctionTable::SetAllCalls(const ResolvedCalls& calls) {
  callees_.resize(calls.callees.size());
  ForEachRange(calls.ends.size(), threads_, [&](uint32_t first, uint32_t end) {
    for (uint32_t caller = first; caller < end; caller += kCallersTogether) {
      SetCalls(caller, std::min(caller + kCallersTogether, end), calls);
    }
  });
  callers_.reset();
}

// Each step asks for what the next one reads.
void StkFunctionTable::SetCalls(uint32_t firstCaller, uint32_t endCaller,
                                const ResolvedCalls& calls) {
  const std::span<StkFunction*> all(callees_);
  const uint32_t start = calls.StartOf(firstCaller);
  const std::span<StkFunction*> together = all.subspan(start, calls.ends[endCaller - 1] - start);
  for (size_t i = 0; i < together.size(); ++i) {
    together[i] = &blocks_.At(calls.callees[start + i]);
    Fetch(&together[i]->name);
  }
  for (const StkFunction* callee : together) {
    Fetch(callee->name.data());
  }
  for (uint32_t caller = firstCaller; caller < endCaller; ++caller) {
    const uint32_t first = calls.StartOf(caller);
    const std::span<StkFunction*> callees = all.subspan(first, calls.ends[caller] - first);
    SortByName(callees, codePage_);
    functions_[caller]->callees = callees;
  }
}

std::span<const uint32_t> StkFunctionTable::Callers(uint32_t function) const {
  if (!callers_) {
    ResolvedCalls calls;
    calls.callees.reserve(callees_.size());
    calls.ends.reserve(functions_.size());
    for (const StkFunction* caller : functions_) {
      for (const StkFunction* callee : caller->callees) {
        calls.callees.push_back(IndexOf(*callee));
      }
      calls.ends.push_back(static_cast<uint32_t>(calls.callees.size()));
    }
    callers_.emplace(calls);
  }
  return callers_->Of(function);
}

StkFunction* StkFunctionTable::FindBySpecName(std::string_view fileBaseName, std::string_view name,
                                              bool bracketed) const {
  const auto find = [&](std::string_view symbol) {
    const uint32_t known = names_.Find(symbol);
    return fileBaseName.empty() ? nameIndex_->FindUnqualified(known)
                                : nameIndex_->FindStatic(known, fileBaseName);
  };
  if (!rules_.underscored) {
    return find(name);
  }
  if (!bracketed && name.starts_with('_')) {
    if (StkFunction* function = find(name); function != nullptr) {
      return function;
    }
  }
  return find(std::string("_").append(name));
}

StkFunctionList StkFunctionTable::Namesakes(std::string_view cName) const {
  const std::string symbol = (rules_.underscored ? "_" : "") + std::string(cName);
  return nameIndex_->FindAll(names_.Find(symbol));
}

bool StkFunctionTable::SharesName(const StkFunction& function) const {
  return nameIndex_->IsShared(function.index);
}

void StkFunctionTable::AddPointerName(const StkFunction& function, uint32_t name) {
  constexpr size_t kMostNames = 16;
  std::vector<uint32_t>& names = pointerNames_[function.index];
  if (names.size() < kMostNames && std::ranges::find(names, name) == names.end()) {
    names.push_back(name);
  }
}

std::vector<std::string_view> StkFunctionTable::PointerNames(const StkFunction& function) const {
  std::vector<std::string_view> texts;
  if (const auto found = pointerNames_.find(function.index); found != pointerNames_.end()) {
    std::ranges::transform(found->second, std::back_inserter(texts),
                           [this](uint32_t name) { return names_[name]; });
  }
  return texts;
}

bool StkFunctionTable::SharesShownName(const StkFunction& function) const {
  const std::string_view shown = function.ShownName();
  return !shown.empty() && nameIndex_->CountShown(names_.Find(shown)) > 1;
}

void StkFunctionTable::SetLibrarySize(StkFunction& function, uint32_t size) {
  if (function.IsUnknown()) {
    --unknownCount_;
  }
  function.flags |= FN_LIBRARY;
  function.librarySize = size;
  Touch(function);
}

void StkFunctionTable::SetPendingAdjustment(StkFunction& function, StkAdjustment adjustment) {
  if (!function.adjustment && !function.pendingAdjustment) {
    ++adjustedCount_;
  }
  function.pendingAdjustment = std::make_unique<StkAdjustment>(std::move(adjustment));
  Touch(function);
}

void StkFunctionTable::DiscardPendingAdjustments() {
  pendingDirectCallees_.clear();
  pendingBrought_.clear();
  clones_.DiscardPending();
  for (StkFunction* function : functions_) {
    if (function->pendingAdjustment == nullptr) {
      continue;
    }
    if (function->adjustment == nullptr) {
      --adjustedCount_;
    }
    function->pendingAdjustment.reset();
    Touch(*function);
  }
}

void StkFunctionTable::PutInForce(StkFunction& function, StkAppliedAdjustment adjustment) {
  if (function.adjustment == nullptr) {
    function.adjustment = std::make_unique<StkAppliedAdjustment>();
    adjustedCount_ += function.pendingAdjustment == nullptr ? 1u : 0u;
  }
  *function.adjustment = adjustment;
  Touch(function);
}

// Was touched when it became pending, and has been computed with since.
void StkFunctionTable::PutPendingInForce(StkFunction& function) {
  const StkAdjustment& pending = *function.pendingAdjustment;
  if (function.adjustment == nullptr) {
    function.adjustment = std::make_unique<StkAppliedAdjustment>();
  }
  *function.adjustment = {pending.margin, pending.depth};
  function.pendingAdjustment.reset();
}

void StkFunctionTable::TakeAdjustmentAway(StkFunction& function) {
  if (function.adjustment != nullptr) {
    function.adjustment.reset();
    adjustedCount_ -= function.pendingAdjustment == nullptr ? 1u : 0u;
    Touch(function);
  }
}

void StkFunctionTable::StateDirectCallees(const StkFunction& function,
                                          const StkFunctionList& callees) {
  StkFunctionList& stated = pendingDirectCallees_[function.index];
  for (StkFunction* callee : callees) {
    InsertByName(stated, *callee, codePage_);
  }
}

StkFunctionList StkFunctionTable::PutDirectCalleesInForce() {
  StkFunctionList stated;
  for (auto& [index, callees] : pendingDirectCallees_) {
    stated.push_back(functions_[index]);
    SetDirectCallees(*functions_[index], std::move(callees));
  }
  pendingDirectCallees_.clear();
  return stated;
}

// No total depends on them, so that only the bounds are told.
void StkFunctionTable::SetDirectCallees(StkFunction& function, StkFunctionList callees) {
  if (callees == DirectCallees(function)) {
    return;
  }
  if (!changes_.structure) {
    changes_.functions.push_back(&function);
  }
  if (callees.empty()) {
    function.flags &= ~FN_CALLS_STATED;
    directCallees_.erase(function.index);
  } else {
    function.flags |= FN_CALLS_STATED;
    directCallees_[function.index] = std::move(callees);
  }
}

const StkFunctionList& StkFunctionTable::DirectCallees(const StkFunction& function) const {
  static const StkFunctionList kNone;
  const auto found = directCallees_.find(function.index);
  return found == directCallees_.end() ? kNone : found->second;
}

void StkFunctionTable::NoteBrought(const StkFunction& function, std::string_view path,
                                   uint32_t line) {
  pendingBrought_[function.index] = BroughtPlace{std::string(path), line};
}

void StkFunctionTable::PutBroughtInForce() {
  for (auto& [index, place] : pendingBrought_) {
    const StkFunction& function = *functions_[index];
    const auto [entry, isNew] = brought_.try_emplace(index);
    BroughtStatement& brought = entry->second;
    if (isNew && function.adjustment != nullptr) {
      brought.kept = *function.adjustment;
      brought.keptCallees = function.extraCallees;
    }
    if (isNew) {
      brought.keptDirectCallees = DirectCallees(function);
      brought.keptOfClone = clones_.Statement(function);
    }
    brought.place = std::move(place);
  }
  pendingBrought_.clear();
}

const BroughtStatement* StkFunctionTable::Brought(const StkFunction& function) const {
  const auto found = brought_.find(function.index);
  return found == brought_.end() ? nullptr : &found->second;
}

void StkFunctionTable::KeepUnderBrought(const StkFunction& function, const StkAdjustment& stated,
                                        CloneStatement ofClone) {
  BroughtStatement& brought = brought_.at(function.index);
  brought.kept.reset();
  if (stated.Adjusts()) {
    brought.kept = {stated.margin, stated.depth};
  }
  brought.keptCallees = stated.callees.value_or(StkFunctionList());
  brought.keptDirectCallees = stated.directCallees;
  brought.keptOfClone = std::move(ofClone);
}

const CloneStatement& StkFunctionTable::KeptOfClone(const StkFunction& clone) const {
  const BroughtStatement* brought = Brought(clone);
  return brought != nullptr ? brought->keptOfClone : clones_.Statement(clone);
}

void StkFunctionTable::BringTotal(StkFunction& function, uint32_t total) {
  function.flags |= FN_TOTAL_STATED;
  broughtTotals_[function.index] = total;
  NoteStructureChange();
}

uint32_t StkFunctionTable::BroughtTotal(const StkFunction& function) const {
  const auto found = broughtTotals_.find(function.index);
  return found == broughtTotals_.end() ? 0 : found->second;
}

KeptStatement StkFunctionTable::Kept(const StkFunction& function) const {
  if (const BroughtStatement* brought = Brought(function)) {
    return {brought->kept ? &*brought->kept : nullptr, brought->keptCallees,
            brought->keptDirectCallees};
  }
  return InForce(function);
}

KeptStatement StkFunctionTable::InForce(const StkFunction& function) const {
  static const StkFunctionList kNone;
  return {function.adjustment.get(), function.adjustment != nullptr ? function.extraCallees : kNone,
          DirectCallees(function)};
}

StkFunctionList StkFunctionTable::TakeTouched() {
  if (changes_.functions.size() + touched_.size() > Count()) {
    NoteStructureChange();  // to look at everything costs less
  }
  if (!changes_.structure) {
    changes_.functions.insert(changes_.functions.end(), touched_.begin(), touched_.end());
  }
  return std::exchange(touched_, {});
}

uint32_t StkFunctionTable::CountForSpecFile(bool withUnknown) const {
  return static_cast<uint32_t>(
      std::ranges::count_if(functions_, [withUnknown](const StkFunction* each) {
        return each->HasStatement() || (withUnknown && each->IsUnknown());
      }));
}

void StkFunctionTable::Clear() {
  nameIndex_->Clear();
  callNames_.Clear();
  directCallees_.clear();
  pendingDirectCallees_.clear();
  pointerNames_.clear();
  functions_.clear();
  callees_ = {};
  callers_.reset();
  extraCallers_ = {};
  touched_.clear();
  changes_ = {};
  boundComponents_.reset();
  blocks_.Clear();
  names_ = NameTable();
  brought_.clear();
  broughtTotals_.clear();
  pendingBrought_.clear();
  clones_.Clear();
  unknownCount_ = 0;
  adjustedCount_ = 0;
  NoteRearrangedCallees();
  overLimitRoots_ = 0;
  leadsToRecursion_.clear();
}

}  // namespace velkor
