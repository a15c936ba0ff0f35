#include "readers/gcc/object_recorder.h"

#include <algorithm>

#include "readers/gcc/address_uses.h"
#include "readers/gcc/symbol_name.h"

namespace velkor {
namespace {

constexpr size_t kMostNames = 5;

}  // namespace

BinaryFaults ObjectRecorder::Faults() const {
  BinaryFaults faults = elf_.Faults();
  faults.Add(facts_.Faults());
  faults.Add(frames_.Faults());
  return faults;
}

uint32_t ObjectRecorder::FunctionOf(uint32_t objectFunction) const {
  if (functionOf_[objectFunction] != UnitRecording::kNone) {
    return functionOf_[objectFunction];
  }
  const std::vector<ObjectFunction>& functions = facts_.Functions();
  const uint32_t first = facts_.FirstAlias(objectFunction);
  for (uint32_t i = first; i < functions.size() && facts_.FirstAlias(i) == first; ++i) {
    if (functionOf_[i] != UnitRecording::kNone) {
      return functionOf_[i];
    }
  }
  return UnitRecording::kNone;
}

// Aliases follow one another; the first recorded one of them, else the first one with a type, has
// the code.
std::vector<uint32_t> ObjectRecorder::RecordOthers() {
  std::vector<uint32_t> unknown;
  const std::vector<ObjectFunction>& functions = facts_.Functions();
  for (uint32_t first = 0, end = 0; first < functions.size(); first = end) {
    end = first + 1;
    while (end < functions.size() && functions[end].section == functions[first].section &&
           functions[end].address == functions[first].address) {
      ++end;
    }
    uint32_t holder = FunctionOf(first);
    if (functions[first].name.ends_with(".cold") && end == first + 1) {
      const uint32_t whole = facts_.Find(
          functions[first].name.substr(0, functions[first].name.size() - sizeof(".cold") + 1));
      if (whole != ObjectCall::kNoFunction && FunctionOf(whole) != UnitRecording::kNone) {
        functionOf_[first] = FunctionOf(whole);
        continue;
      }
    }
    if (holder == UnitRecording::kNone) {
      uint32_t chosen = first;
      while (chosen + 1 < end && !functions[chosen].isTyped) {
        ++chosen;
      }
      chosen = functions[chosen].isTyped ? chosen : first;
      if (!RecordThunk(chosen)) {
        unknown.push_back(chosen);
        recording_.functions[Record(chosen, false)].isSizeUnknown = true;
      }
      holder = functionOf_[chosen];
    }
    for (uint32_t i = first; i < end; ++i) {
      if (functionOf_[i] == UnitRecording::kNone) {
        RecordAlias(i, holder);
      }
    }
  }
  return unknown;
}

uint32_t ObjectRecorder::Record(uint32_t objectFunction, bool isAlias) {
  const ObjectFunction& function = facts_.Functions()[objectFunction];
  const auto added = static_cast<uint32_t>(recording_.functions.size());
  UnitRecording::Function& record = recording_.functions.emplace_back();
  record.name = recording_.names.Intern(function.name);
  if (const std::string shown = DemangledName(function.name); !shown.empty()) {
    record.shownName = recording_.names.Intern(shown);
  }
  record.reach = ReachOf(function);
  record.source = FunctionSource::kObject;
  record.isAlias = isAlias;
  functionOf_[objectFunction] = added;
  return added;
}

void ObjectRecorder::RecordAlias(uint32_t objectFunction, uint32_t function) {
  const uint32_t alias = Record(objectFunction, true);
  recording_.functions[alias].file = recording_.functions[function].file;
  recording_.functions[alias].line = recording_.functions[function].line;
  recording_.calls.push_back({.caller = alias, .target = function, .isLocal = true});
}

bool ObjectRecorder::RecordThunk(uint32_t objectFunction) {
  const std::string target = ThunkTarget(facts_.Functions()[objectFunction].name);
  if (target.empty()) {
    return false;
  }
  const uint64_t bytes = FrameBytes(objectFunction);
  const uint32_t thunk = Record(objectFunction, false);
  recording_.functions[thunk].frameSize =
      static_cast<uint32_t>(std::min<uint64_t>(bytes, kOverSize));
  const uint32_t inObject = facts_.Find(target);
  if (inObject != ObjectCall::kNoFunction && FunctionOf(inObject) != UnitRecording::kNone) {
    recording_.calls.push_back({.caller = thunk, .target = FunctionOf(inObject), .isLocal = true});
  } else {
    recording_.calls.push_back(
        {.caller = thunk, .target = recording_.names.Intern(target), .isLocal = false});
  }
  return true;
}

uint64_t ObjectRecorder::FrameBytes(uint32_t objectFunction) const {
  const ObjectFunction& function = facts_.Functions()[objectFunction];
  uint64_t bytes = 0;
  if (const FunctionFrame* frame = frames_.Find(function.section, function.address)) {
    bytes = frame->bytes;
  }
  const uint32_t part = facts_.Find(std::string(function.name) + ".cold");
  if (part != ObjectCall::kNoFunction) {
    const ObjectFunction& cold = facts_.Functions()[part];
    if (const FunctionFrame* frame = frames_.Find(cold.section, cold.address)) {
      bytes = std::max(bytes, frame->bytes);
    }
  }
  return bytes;
}

UnitRecording::Call ObjectRecorder::CallOf(uint32_t caller, std::string_view target,
                                           uint32_t objectFunction) {
  const uint32_t local = RecordedTarget(target, objectFunction);
  if (local != UnitRecording::kNone) {
    return {.caller = caller, .target = local, .isLocal = true};
  }
  return {.caller = caller, .target = recording_.names.Intern(target), .isLocal = false};
}

void ObjectRecorder::RecordTaskUses() {
  std::vector<bool> creates(recording_.functions.size(), false);
  bool any = false;
  for (const UnitRecording::Call& call : recording_.calls) {
    const uint32_t name = call.isLocal ? recording_.functions[call.target].name : call.target;
    if (IsTaskCreator(recording_.names[name])) {
      creates[call.caller] = true;
      any = true;
    }
  }
  if (!any) {
    return;
  }
  for (const AddressUse& use : AddressUsesOf(elf_, facts_)) {
    const uint32_t user = FunctionOf(use.user);
    if (user != UnitRecording::kNone && creates[user]) {
      recording_.taskUses.push_back(CallOf(user, use.name, use.function));
    }
  }
}

uint32_t ObjectRecorder::RecordedTarget(std::string_view name, uint32_t objectFunction) const {
  if (objectFunction == ObjectCall::kNoFunction) {
    return UnitRecording::kNone;
  }
  const uint32_t named = facts_.Find(name);
  const uint32_t local =
      named != ObjectCall::kNoFunction ? functionOf_[named] : UnitRecording::kNone;
  return local != UnitRecording::kNone ? local : FunctionOf(objectFunction);
}

void ObjectRecorder::RecordTakenAddresses() {
  for (const TakenAddress& taken : facts_.TakenAddresses()) {
    const uint32_t local = RecordedTarget(taken.target, taken.targetFunction);
    const bool isLocal = local != UnitRecording::kNone;
    recording_.takenAddresses.push_back(
        {.target = isLocal ? local : recording_.names.Intern(taken.target), .isLocal = isLocal});
  }
}

UnitRecording::Reach ObjectRecorder::ReachOf(const ObjectFunction& function) {
  switch (function.reach) {
    case FunctionReach::kLocal:
      return UnitRecording::Reach::kLocal;
    case FunctionReach::kWeak:
      return UnitRecording::Reach::kWeak;
    case FunctionReach::kGlobal:
      break;
  }
  return UnitRecording::Reach::kGlobal;
}

std::string NamesOf(const std::vector<std::string_view>& names) {
  std::string text;
  for (size_t i = 0; i < names.size() && i < kMostNames; ++i) {
    text.append(i == 0 ? "" : ", ").append(names[i]);
  }
  if (names.size() > kMostNames) {
    text += " and " + std::to_string(names.size() - kMostNames) + " more";
  }
  return text;
}

std::string CompilerVersion(std::string_view compiler) {
  if (!compiler.starts_with("GCC:")) {
    return {};
  }
  const size_t bracket = compiler.rfind(") ");
  compiler.remove_prefix(bracket == std::string_view::npos ? sizeof("GCC: ") - 1 : bracket + 2);
  return std::string(compiler.substr(0, compiler.find(' ')));
}

}  // namespace velkor
