#include "core/function_table.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/function_name_index.h"

namespace velkor {

StkFunctionTable::StkFunctionTable(const CodePage& codePage)
    : codePage_(codePage), nameIndex_(std::make_unique<FunctionNameIndex>(codePage, functions_)) {}

StkFunctionTable::~StkFunctionTable() = default;

StkFunction& StkFunctionTable::AddDefined(std::string_view name, const StkFileEntry& file) {
  auto function = std::make_unique<StkFunction>();
  function->name = name;
  function->file = &file;
  function->flags = FN_DEFINED;
  return Insert(std::move(function));
}

StkFunction& StkFunctionTable::Insert(std::unique_ptr<StkFunction> function) {
  StkFunction& inserted = *function;
  inserted.index = Count();
  functions_.push_back(std::move(function));
  nameIndex_->Append();
  if (!inserted.Is(FN_DEFINED)) {
    ++unknownCount_;
  }
  return inserted;
}

StkFunction& StkFunctionTable::ResolveCall(const StkFunction& caller, std::string_view calleeName) {
  if (StkFunction* callee = nameIndex_->FindCallee(calleeName, caller.file); callee != nullptr) {
    return *callee;
  }
  auto unknown = std::make_unique<StkFunction>();
  unknown->name = calleeName;
  return Insert(std::move(unknown));
}

void StkFunctionTable::ResolveAllCalls() {
  // By index: unknown functions are appended on the way.
  for (size_t i = 0; i < functions_.size(); ++i) {
    ResolveCallsOf(*functions_[i]);
  }
  for (const auto& function : functions_) {
    function->callers.shrink_to_fit();
  }
}

// The names of one function are told apart and matched exactly, so no two of them mean the same
// record; and since a caller is resolved as a whole, it can only be a callee's last caller.
void StkFunctionTable::ResolveCallsOf(StkFunction& caller) {
  const std::unique_ptr<StkStringList> names = std::move(caller.callNames);
  if (!names) {
    return;
  }
  caller.callees.reserve(caller.callees.size() + names->size());
  for (const std::string& name : *names) {
    StkFunction& callee = ResolveCall(caller, name);
    caller.callees.push_back(&callee);
    if (callee.callers.empty() || callee.callers.back() != &caller) {
      callee.callers.push_back(&caller);
    }
  }
  SortByName(caller.callees, codePage_);
}

StkFunction* StkFunctionTable::FindBySpecName(std::string_view fileBaseName, std::string_view name,
                                              bool bracketed) const {
  const auto find = [&](std::string_view symbol) {
    return fileBaseName.empty() ? nameIndex_->FindUnqualified(symbol)
                                : nameIndex_->FindStatic(symbol, fileBaseName);
  };
  if (!bracketed && name.starts_with('_')) {
    if (StkFunction* function = find(name); function != nullptr) {
      return function;
    }
  }
  return find(std::string("_").append(name));
}

void StkFunctionTable::SetLibrarySize(StkFunction& function, uint32_t size) {
  if (function.IsUnknown()) {
    --unknownCount_;
  }
  function.flags |= FN_LIBRARY;
  function.librarySize = size;
}

void StkFunctionTable::SetPendingAdjustment(StkFunction& function, StkAdjustment adjustment) {
  if (!function.adjustment && !function.pendingAdjustment) {
    ++adjustedCount_;
  }
  function.pendingAdjustment = std::make_unique<StkAdjustment>(std::move(adjustment));
}

void StkFunctionTable::DiscardPendingAdjustments() {
  for (const auto& function : functions_) {
    if (function->pendingAdjustment && !function->adjustment) {
      --adjustedCount_;
    }
    function->pendingAdjustment.reset();
  }
}

uint32_t StkFunctionTable::CountForSpecFile(bool withUnknown) const {
  return static_cast<uint32_t>(std::ranges::count_if(functions_, [withUnknown](const auto& each) {
    return each->adjustment != nullptr || (withUnknown && each->IsUnknown());
  }));
}

void StkFunctionTable::Clear() {
  nameIndex_->Clear();
  functions_.clear();
  unknownCount_ = 0;
  adjustedCount_ = 0;
  overflow_ = false;
}

}  // namespace velkor
