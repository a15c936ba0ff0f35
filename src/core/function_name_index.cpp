#include "core/function_name_index.h"

#include <array>

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

void FunctionNameIndex::Append() {
  const auto added = static_cast<uint32_t>(functions_.size() - 1);
  const std::string_view name = functions_[added]->name;
  const uint32_t hash = HashExactText(name);
  const auto equal = [&](uint32_t i) {
    return links_[i].hash == hash && functions_[i]->name == name;
  };
  links_.push_back({added, hash});
  if (uint32_t* last = lastOfName_.Find(hash, equal); last != nullptr) {
    links_[added].next = links_[*last].next;
    links_[*last].next = added;
    *last = added;
  } else {
    lastOfName_.Insert(added, [this](uint32_t i) { return links_[i].hash; });
  }
}

void FunctionNameIndex::Clear() {
  lastOfName_.Clear();
  links_ = {};
  crowds_.clear();
}

StkFunction* FunctionNameIndex::FindCallee(std::string_view name, const StkFileEntry* callerFile) {
  const uint32_t* last = FindLast(name, HashExactText(name));
  if (last == nullptr) {
    return nullptr;
  }
  std::array<StkFunction*, kCallRanks + 1> first{};
  const bool few = VisitFew(*last, [&](StkFunction& function) {
    StkFunction*& place = first[CallRank(function, callerFile)];
    place = place == nullptr ? &function : place;
  });
  if (!few) {
    const Crowd& crowd = CrowdOf(*last);
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

StkFunction* FunctionNameIndex::FindUnqualified(std::string_view name) {
  const uint32_t* last = FindLast(name, HashExactText(name));
  if (last == nullptr) {
    return nullptr;
  }
  StkFunction* global = nullptr;
  const bool few = VisitFew(*last, [&](StkFunction& function) {
    global = global == nullptr && IsGlobal(function) ? &function : global;
  });
  if (!few) {
    global = CrowdOf(*last).firstGlobal;
  }
  return global != nullptr ? global : functions_[links_[*last].next].get();
}

StkFunction* FunctionNameIndex::FindStatic(std::string_view name, std::string_view fileBaseName) {
  const uint32_t* last = FindLast(name, HashExactText(name));
  if (last == nullptr) {
    return nullptr;
  }
  StkFunction* found = nullptr;
  const bool few = VisitFew(*last, [&](StkFunction& function) {
    if (found == nullptr && function.IsStatic() && function.file != nullptr &&
        codePage_.EqualIgnoreCase(function.file->BaseName(codePage_), fileBaseName)) {
      found = &function;
    }
  });
  if (!few) {
    const Crowd& crowd = CrowdOf(*last);
    const auto inFile = crowd.staticByBaseName.find(fileBaseName);
    found = inFile == crowd.staticByBaseName.end() ? nullptr : inFile->second;
  }
  return found;
}

const uint32_t* FunctionNameIndex::FindLast(std::string_view name, uint32_t hash) const {
  return lastOfName_.Find(
      hash, [&](uint32_t i) { return links_[i].hash == hash && functions_[i]->name == name; });
}

template <typename Visit>
bool FunctionNameIndex::VisitFew(uint32_t last, Visit visit) const {
  uint32_t i = last;
  for (int count = 0; count < kFewRecords; ++count) {
    i = links_[i].next;
    visit(*functions_[i]);
    if (i == last) {
      return true;
    }
  }
  return false;
}

FunctionNameIndex::Crowd& FunctionNameIndex::CrowdOf(uint32_t last) {
  Crowd& crowd = crowds_.try_emplace(links_[last].next, codePage_).first->second;
  uint32_t i = crowd.last == kNone ? last : crowd.last;
  for (bool more = crowd.last != last; more; more = i != last) {
    i = links_[i].next;
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
