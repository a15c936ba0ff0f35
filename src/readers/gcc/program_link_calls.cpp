#include <algorithm>
#include <numeric>
#include <span>

#include "readers/gcc/program_link.h"

namespace velkor {
namespace {

constexpr uint32_t kSeveral = UINT32_MAX - 1;

}  // namespace

void ProgramLink::LinkCalls() {
  outsideOfName_.assign(database_->functions.NameCount(), kNone);
  latestCaller_.assign(entities_.size(), kNone);
  hasSites_.assign(entities_.size(), false);
  // The parts in the order of their entities.
  std::vector<uint32_t> ends(entities_.size() + 1, 0);
  for (const uint32_t entity : entityOfPart_) {
    ++ends[entity + size_t{1}];
  }
  std::partial_sum(ends.begin(), ends.end(), ends.begin());
  std::vector<uint32_t> parts(entityOfPart_.size());
  for (uint32_t part = 0; part < entityOfPart_.size(); ++part) {
    parts[ends[entityOfPart_[part]]++] = part;
  }
  calleeEnds_.reserve(entities_.size());
  uint32_t next = 0;
  for (uint32_t entity = 0; entity < entities_.size(); ++entity) {
    for (; next < ends[entity]; ++next) {
      LinkCallsOfPart(entity, parts[next]);
    }
    AddCallsOfCode(entity);
    if (CallsThroughTable(entity)) {
      for (const uint32_t callee : CalleesOfTable(FunctionOf(entities_[entity].firstPart).name)) {
        AddCallee(entity, callee);
      }
    }
    calleeEnds_.push_back(static_cast<uint32_t>(callees_.size()));
  }
  for (const Unit& unit : units_) {
    for (const UnitRecording::IndirectSite& site : unit.sites) {
      hasSites_[entityOfPart_[unit.firstPart + site.function]] = true;
    }
  }
}

void ProgramLink::LinkCallsOfPart(uint32_t entity, uint32_t part) {
  Unit& unit = units_[unitOfPart_[part]];
  const uint32_t function = part - unit.firstPart;
  const bool isAlias = unit.functions[function].isAlias;
  size_t& next = unit.nextCall;
  for (next = FirstCallOf(unit, function);
       next < unit.calls.size() && unit.calls[next].caller == function; ++next) {
    const UnitRecording::Call& call = unit.calls[next];
    if (!call.isLocal) {
      AddCalleesByName(entity, call.target);
      continue;
    }
    const UnitRecording::Function& target = unit.functions[call.target];
    // The code of an alias is that of its own object.
    if (isAlias || target.reach == Reach::kLocal) {
      AddCallee(entity, entityOfPart_[unit.firstPart + call.target]);
      if (target.mayBeWeak && strongOfName_[target.name] != kNone) {
        AddCallee(entity, strongOfName_[target.name]);  // which would replace a weak one
      }
    } else {
      AddCalleesByName(entity, target.name);
    }
  }
}

// The parts of a unit mostly come in their order: then where the calls of the one before end.
size_t ProgramLink::FirstCallOf(const Unit& unit, uint32_t function) {
  const std::vector<UnitRecording::Call>& calls = unit.calls;
  const size_t next = unit.nextCall;
  const bool isBehind = next == 0 || calls[next - 1].caller < function;
  if (isBehind && (next == calls.size() || calls[next].caller >= function)) {
    return next;
  }
  const auto first = std::ranges::lower_bound(calls, function, {}, &UnitRecording::Call::caller);
  return static_cast<size_t>(first - calls.begin());
}

void ProgramLink::AddCalleesByName(uint32_t caller, uint32_t name) {
  if (strongOfName_[name] != kNone) {
    AddCallee(caller, strongOfName_[name]);
    return;
  }
  if (weakOfName_[name] == kNone) {
    AddCallee(caller, OutsideOf(name));
    return;
  }
  for (uint32_t weak = weakOfName_[name]; weak != kNone; weak = entities_[weak].nextWeak) {
    AddCallee(caller, weak);
  }
}

void ProgramLink::AddCallee(uint32_t caller, uint32_t callee) {
  if (callee >= latestCaller_.size()) {
    latestCaller_.resize(callee + size_t{1}, kNone);
  }
  if (latestCaller_[callee] != caller) {
    latestCaller_[callee] = caller;
    callees_.push_back(callee);
  }
}

uint32_t ProgramLink::OutsideOf(uint32_t name) {
  if (name >= outsideOfName_.size()) {
    outsideOfName_.resize(name + size_t{1}, kNone);
  }
  if (outsideOfName_[name] == kNone) {
    outsideOfName_[name] = static_cast<uint32_t>(outside_.size());
    outside_.push_back({.name = name, .target = AliasTarget(name)});
    Outside& outside = outside_.back();
    const auto own = static_cast<uint32_t>(entities_.size()) + outsideOfName_[name];
    if (outside.target == kNone && options_.program != nullptr) {
      outside.code = options_.program->CodeNamed(NameOf(name));
    }
    if (outside.code != kNone) {
      const auto [known, isNew] = calleeOfCode_.try_emplace(outside.code, own);
      outside.target = isNew ? kNone : known->second;
    }
  }
  return static_cast<uint32_t>(entities_.size()) + outsideOfName_[name];
}

// Of a name that only the program knows.
uint32_t ProgramLink::AliasTarget(uint32_t name) {
  if (options_.program == nullptr) {
    return kNone;
  }
  for (const std::string_view alias : options_.program->AliasesOf(NameOf(name))) {
    if (const uint32_t entity = EntityNamed(database_->functions.NumberOfName(alias));
        entity != kNone) {
      return entity;
    }
  }
  return kNone;
}

// The one function that the name can mean in the program.
uint32_t ProgramLink::EntityNamed(uint32_t name) {
  if (name >= strongOfName_.size()) {
    return kNone;
  }
  if (strongOfName_[name] != kNone) {
    return strongOfName_[name];
  }
  if (weakOfName_[name] != kNone) {
    return entities_[weakOfName_[name]].nextWeak == kNone ? weakOfName_[name] : kNone;
  }
  if (localOfName_.empty()) {
    localOfName_.assign(strongOfName_.size(), kNone);
    for (uint32_t entity = 0; entity < entities_.size(); ++entity) {
      uint32_t& local = localOfName_[FunctionOf(entities_[entity].firstPart).name];
      local = local == kNone ? entity : kSeveral;
    }
  }
  return localOfName_[name] == kSeveral ? kNone : localOfName_[name];
}

// They have no code that could run.
void ProgramLink::LeaveOutReplacedAliases() {
  std::vector<bool> isCalled(entities_.size(), false);
  for (const uint32_t callee : callees_) {
    if (!IsOutside(callee)) {
      isCalled[callee] = true;
    }
  }
  for (uint32_t i = 0; i < entities_.size(); ++i) {
    const bool isAlias = FunctionOf(entities_[i].firstPart).isAlias;
    entities_[i].isKept = !isAlias || !entities_[i].isReplaced || isCalled[i];
  }
}

// What the program tells of frames, and what units do not tell of their machine.
void ProgramLink::ImproveFrames() {
  uint32_t begin = 0;
  for (uint32_t i = 0; i < entities_.size(); ++i) {
    Entity& entity = entities_[i];
    const UnitRecording::Function& function = FunctionOf(entity.firstPart);
    const bool callsNothing = calleeEnds_[i] == begin && !hasSites_[i];
    begin = calleeEnds_[i];
    if (function.isAlias || entity.frameSize == kOverSize) {
      continue;
    }
    if (options_.program != nullptr) {
      const uint64_t bytes = options_.program->FrameBytesOf(NameOf(function.name));
      entity.frameSize = static_cast<uint32_t>(
          std::min<uint64_t>(std::max<uint64_t>(entity.frameSize, bytes), kOverSize));
    }
    ImproveByCode(entity);
    if (callsNothing && options_.machine == ELF_X86_64 && !UnitOf(entity.firstPart).hasMachine) {
      entity.frameSize += std::min(kRedZone, kOverSize - entity.frameSize);
    }
  }
}

void ProgramLink::MarkTakenAddresses() {
  for (const Unit& unit : units_) {
    for (const UnitRecording::Address& address : unit.addresses) {
      if (!address.isLocal) {
        MarkTakenByName(address.target);
        continue;
      }
      const UnitRecording::Function& function = unit.functions[address.target];
      if (function.reach == Reach::kLocal) {
        entities_[entityOfPart_[unit.firstPart + address.target]].isAddressTaken = true;
      } else {
        MarkTakenByName(function.name);
      }
    }
  }
}

// The address of main is only taken to start the program with it.
void ProgramLink::MarkTakenByName(uint32_t name) {
  if (NameOf(name) == "main") {
    return;
  }
  if (strongOfName_[name] != kNone) {
    entities_[strongOfName_[name]].isAddressTaken = true;
    return;
  }
  for (uint32_t weak = weakOfName_[name]; weak != kNone; weak = entities_[weak].nextWeak) {
    entities_[weak].isAddressTaken = true;
  }
}

// What is not in the program is not called there. What a function of the program calls is never
// left out, whatever its name is there.
void ProgramLink::LeaveOutUnlinked(StkReporter& reporter) {
  const LinkedProgram* program = options_.program;
  if (program == nullptr || !program->HasSymbols()) {
    return;
  }
  std::vector<bool> isLinked(entities_.size(), false);
  std::vector<uint32_t> waiting;
  const auto keep = [&](uint32_t entity) {
    if (!IsOutside(entity) && !isLinked[entity]) {
      isLinked[entity] = true;
      waiting.push_back(entity);
    }
  };
  for (uint32_t i = 0; i < entities_.size(); ++i) {
    const UnitRecording::Function& function = FunctionOf(entities_[i].firstPart);
    const bool isNamed = program->HasFunction(NameOf(function.name));
    const bool mayBeUnnamed = function.reach == Reach::kLocal && !program->HasLocalFunctions();
    const bool isElsewhere =
        entities_[i].isReplaced && program->ReachOf(NameOf(function.name)) == Reach::kGlobal;
    if (entities_[i].isKept &&
        ((isNamed && !isElsewhere) || mayBeUnnamed || entities_[i].isEntry)) {
      keep(i);
    }
  }
  if (waiting.empty()) {
    reporter.PostNote({.rule = "program-mismatch",
                       .text = std::string(reporter.Messages().Text(MessageKey::kNoteOtherProgram)),
                       .file = std::string(options_.programPath),
                       .function = {}});
    return;
  }
  while (!waiting.empty()) {
    const uint32_t entity = waiting.back();
    waiting.pop_back();
    const uint32_t begin = entity == 0 ? 0 : calleeEnds_[entity - 1];
    for (uint32_t call = begin; call < calleeEnds_[entity]; ++call) {
      keep(callees_[call]);
    }
  }
  uint32_t left = 0;
  for (uint32_t i = 0; i < entities_.size(); ++i) {
    left += entities_[i].isKept && !isLinked[i] ? 1U : 0U;
    entities_[i].isKept = entities_[i].isKept && isLinked[i];
  }
  if (left != 0) {
    reporter.PostNote(
        {.rule = "not-linked",
         .text = reporter.Messages().FormatMessageText(MessageKey::kNoteNotLinked, {left}),
         .file = std::string(options_.programPath),
         .function = {}});
  }
}

}  // namespace velkor
