#include "core/detail/function_name_index.h"

#include <array>

#include "platform/fetch.h"

namespace velkor {

namespace {

constexpr int kFewRecords = 8;

bool IsGlobal(const StkFunction& function) {
  return function.Is(FN_DEFINED) && function.Is(FN_GLOBAL);
}

// What a call takes first: 0 static here, 1 global here, 2 global elsewhere, 3 unknown; a static
// of another file is out of reach.
constexpr size_t kCallRanks = 4;

size_t CallRank(const StkFunction& function, const StkFileEntry* callerFile) {
  if (!function.Is(FN_DEFINED)) {
    return 3;
  }
  if (function.file == callerFile) {
    return IsGlobal(function) ? 1 : 0;
  }
  return IsGlobal(function) ? 2 : kCallRanks;
}

}  // namespace

void FunctionNameIndex::Append(uint32_t name) {
  const auto added = static_cast<uint32_t>(functions_.size() - 1);
  if (name >= lastOfName_.size()) {
    lastOfName_.resize(name + size_t{1}, kNone);
  }
  uint32_t& last = lastOfName_[name];
  next_.push_back(last == kNone ? added : next_[last]);
  if (last != kNone) {
    next_[last] = added;
  }
  last = added;
}

void FunctionNameIndex::Clear() {
  lastOfName_ = {};
  next_ = {};
  shown_.clear();
  crowds_.clear();
}

// Each step asks for what the next one reads.
void FunctionNameIndex::FetchCallees(std::span<const uint32_t> names) const {
  for (const uint32_t name : names) {
    if (name < lastOfName_.size()) {
      Fetch(&lastOfName_[name]);
    }
  }
  for (const uint32_t name : names) {
    if (const uint32_t last = LastOf(name); last != kNone) {
      Fetch(&next_[last]);
      Fetch(&functions_[last]);
    }
  }
  for (const uint32_t name : names) {
    if (const uint32_t last = LastOf(name); last != kNone) {
      Fetch(&functions_[last]->file);
    }
  }
}

StkFunction* FunctionNameIndex::FindCallee(uint32_t name, const StkFileEntry* callerFile) {
  const uint32_t last = LastOf(name);
  if (last == kNone) {
    return nullptr;
  }
  std::array<StkFunction*, kCallRanks + 1> first{};
  const bool few = VisitFew(last, [&](StkFunction& function) {
    StkFunction*& place = first[CallRank(function, callerFile)];
    place = place == nullptr ? &function : place;
  });
  if (!few) {
    const Crowd& crowd = CrowdOf(last);
    const auto here = crowd.files.find(callerFile);
    const InFile inFile = here == crowd.files.end() ? InFile{} : here->second;
    first = {inFile.firstStatic, inFile.firstGlobal, crowd.firstGlobal, crowd.firstUnknown};
  }
  for (size_t rank = 0; rank < kCallRanks; ++rank) {
    if (first[rank] != nullptr) {
      return first[rank];
    }
  }
  return nullptr;
}

template <typename Fits>
StkFunction* FunctionNameIndex::FindShown(uint32_t name, Fits fits) const {
  const auto records = shown_.find(name);
  if (records != shown_.end()) {
    for (const uint32_t record : records->second) {
      if (fits(*functions_[record])) {
        return functions_[record];
      }
    }
  }
  return nullptr;
}

StkFunction* FunctionNameIndex::FindUnqualified(uint32_t name) {
  const uint32_t last = LastOf(name);
  if (last == kNone) {
    StkFunction* global = FindShown(name, IsGlobal);
    return global != nullptr ? global : FindShown(name, [](const StkFunction&) { return true; });
  }
  StkFunction* global = nullptr;
  const bool few = VisitFew(last, [&](StkFunction& function) {
    global = global == nullptr && IsGlobal(function) ? &function : global;
  });
  if (!few) {
    global = CrowdOf(last).firstGlobal;
  }
  return global != nullptr ? global : functions_[next_[last]];
}

StkFunction* FunctionNameIndex::FindStatic(uint32_t name, std::string_view fileBaseName) {
  const uint32_t last = LastOf(name);
  if (last == kNone) {
    return FindShown(
        name, [&](const StkFunction& function) { return IsStaticIn(function, fileBaseName); });
  }
  StkFunction* found = nullptr;
  const bool few = VisitFew(last, [&](StkFunction& function) {
    if (found == nullptr && IsStaticIn(function, fileBaseName)) {
      found = &function;
    }
  });
  if (!few) {
    const Crowd& crowd = CrowdOf(last);
    const auto inFile = crowd.staticByBaseName.find(fileBaseName);
    found = inFile == crowd.staticByBaseName.end() ? nullptr : inFile->second;
  }
  return found;
}

StkFunctionList FunctionNameIndex::FindAll(uint32_t name) const {
  StkFunctionList found;
  const uint32_t last = LastOf(name);
  for (uint32_t i = last; i != kNone;) {
    i = next_[i];
    found.push_back(functions_[i]);
    i = i == last ? kNone : i;
  }
  if (const auto shown = shown_.find(name); shown != shown_.end()) {
    for (const uint32_t record : shown->second) {
      found.push_back(functions_[record]);
    }
  }
  return found;
}

bool FunctionNameIndex::IsStaticIn(const StkFunction& function,
                                   std::string_view fileBaseName) const {
  return function.IsStatic() && function.file != nullptr &&
         codePage_.EqualIgnoreCase(function.file->BaseName(codePage_), fileBaseName);
}

template <typename Visit>
bool FunctionNameIndex::VisitFew(uint32_t last, Visit visit) const {
  uint32_t i = last;
  for (int count = 0; count < kFewRecords; ++count) {
    i = next_[i];
    visit(*functions_[i]);
    if (i == last) {
      return true;
    }
  }
  return false;
}

const FunctionNameIndex::Crowd& FunctionNameIndex::CrowdOf(uint32_t last) {
  const std::lock_guard lock(crowdsMutex_);
  Crowd& crowd = crowds_.try_emplace(next_[last], codePage_).first->second;
  uint32_t i = crowd.last == kNone ? last : crowd.last;
  for (bool more = crowd.last != last; more; more = i != last) {
    i = next_[i];
    Classify(crowd, *functions_[i]);
  }
  crowd.last = last;
  return crowd;
}

void FunctionNameIndex::Classify(Crowd& crowd, StkFunction& function) const {
  const auto keepFirst = [&function](StkFunction*& place) {
    place = place == nullptr ? &function : place;
  };
  if (!function.Is(FN_DEFINED)) {
    keepFirst(crowd.firstUnknown);
  } else if (IsGlobal(function)) {
    keepFirst(crowd.firstGlobal);
    keepFirst(crowd.files[function.file].firstGlobal);
  } else {
    keepFirst(crowd.files[function.file].firstStatic);
    if (function.file != nullptr) {
      crowd.staticByBaseName.try_emplace(function.file->BaseName(codePage_), &function);
    }
  }
}

}  // namespace velkor
