#include <algorithm>
#include <array>
#include <sstream>
#include <unordered_set>
#include <utility>

#include "readers/gcc/program_link.h"
#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

constexpr size_t kMostCodeNotes = 50;

std::string TextOfAddress(uint64_t address) {
  std::ostringstream text;
  text << "0x" << std::hex << address;
  return text.str();
}

std::string_view TextOf(CodeDoubt doubt) {
  constexpr std::array<std::string_view, 7> kTexts = {
      "",
      "an instruction there is not known",
      "it comes back with another stack pointer",
      "a loop there moves the stack pointer",
      "it goes on where no code is",
      "not all places are known that it jumps to",
      "it is too large",
  };
  return kTexts[static_cast<size_t>(doubt)];
}

}  // namespace

// Which functions of the program the units tell of.
void ProgramLink::FindCode() {
  if (options_.program == nullptr) {
    return;
  }
  for (uint32_t i = 0; i < entities_.size(); ++i) {
    const UnitRecording::Function& function = FunctionOf(entities_[i].firstPart);
    if (function.isAlias || entities_[i].isReplaced) {
      continue;
    }
    const std::string_view source = LastComponent(UnitOf(entities_[i].firstPart).title);
    entities_[i].code = options_.program->CodeNamed(NameOf(function.name), source);
    if (entities_[i].code != kNone) {
      calleeOfCode_.try_emplace(entities_[i].code, i);
    }
  }
}

// Of an entity whose size only the instructions tell.
void ProgramLink::AddCallsOfCode(uint32_t entity) {
  if (!entities_[entity].isSizeUnknown || entities_[entity].code == kNone) {
    return;
  }
  const FunctionCode& code = CodeOf(entities_[entity].code);
  for (const uint32_t call : code.calls) {
    AddCallee(entity, CalleeOfCode(call));
  }
  hasSites_[entity] = hasSites_[entity] || !code.sites.empty();
}

std::string_view ProgramLink::NameOfCode(uint32_t code) const {
  const ProgramCode::Function& function = options_.program->Code().Functions()[code];
  const std::vector<ObjectFunction>& names = options_.program->Facts().Functions();
  for (uint32_t i = 0; i < function.nameCount; ++i) {
    if (names[function.firstName + i].reach != FunctionReach::kLocal) {
      return names[function.firstName + i].name;
    }
  }
  return options_.program->Code().NameOf(code);
}

uint32_t ProgramLink::EntityOfCode(uint32_t code) {
  const ProgramCode::Function& function = options_.program->Code().Functions()[code];
  for (uint32_t i = 0; i < function.nameCount; ++i) {
    const std::string_view name =
        options_.program->Facts().Functions()[function.firstName + i].name;
    const uint32_t entity = EntityNamed(database_->functions.NumberOfName(name));
    if (entity != kNone) {
      return entity;
    }
  }
  return kNone;
}

// The function that a call of the code means.
uint32_t ProgramLink::CalleeOfCode(uint32_t called) {
  const uint32_t code = options_.program->Code().Meant(called);
  if (const auto known = calleeOfCode_.find(code); known != calleeOfCode_.end()) {
    return known->second;
  }
  uint32_t callee = EntityOfCode(code);
  if (callee == kNone) {
    const std::string_view found = NameOfCode(code);
    const uint32_t name = database_->functions.NumberOfName(
        found.empty() ? TextOfAddress(options_.program->Code().Functions()[code].address)
                      : std::string(found));
    if (options_.program->CodeNamed(found) == code) {
      callee = OutsideOf(name);
    } else {
      callee = static_cast<uint32_t>(entities_.size() + outside_.size());
      outside_.push_back({.name = name, .code = code});
    }
  }
  calleeOfCode_.emplace(code, callee);
  return callee;
}

uint32_t ProgramLink::FrameOfCode(const FunctionCode& code, uint16_t machine) {
  const bool callsNothing = code.calls.empty() && code.sites.empty();
  const uint64_t redZone = machine == ELF_X86_64 && callsNothing ? kRedZone : 0;
  const uint64_t bytes = std::max(code.codeBytes, code.callFrameBytes) + redZone;
  return static_cast<uint32_t>(std::min<uint64_t>(bytes, kOverSize));
}

// A frame that the compiler told is never taken for smaller.
void ProgramLink::ImproveByCode(Entity& entity) const {
  if (entity.code == kNone || entity.frameSize == kOverSize) {
    return;
  }
  const FunctionCode& code = CodeOf(entity.code);
  entity.toldBytes = entity.isSizeUnknown ? 0 : entity.frameSize;
  if (entity.isSizeUnknown) {
    entity.frameSize = std::max(entity.frameSize, FrameOfCode(code, options_.machine));
    entity.isSizeUnknown = code.doubt != CodeDoubt::kNone;
    entity.isRead = true;
    entity.isDynamic = entity.isDynamic || code.isDynamic;
  } else if (code.doubt == CodeDoubt::kNone && !code.isDynamic) {
    entity.frameSize = static_cast<uint32_t>(
        std::min<uint64_t>(std::max<uint64_t>(entity.frameSize, code.codeBytes), kOverSize));
  }
}

// Functions of libraries that are perhaps called through a pointer only.
void ProgramLink::AddPointedOutside() {
  if (options_.program == nullptr) {
    return;
  }
  for (const uint32_t code : options_.program->Code().Pointed()) {
    if (const uint32_t callee = CalleeOfCode(code); IsOutside(callee)) {
      outside_[callee - entities_.size()].isPointed = true;
    }
  }
}

// What the functions outside of all units call, and those in turn.
void ProgramLink::LinkOutsideCode() {
  size_t next = 0;
  while (next < outside_.size()) {  // grows meanwhile
    const Outside outside = outside_[next++];
    if (outside.target != kNone) {
      outsideCallees_.push_back(outside.target);
    } else if (outside.code != kNone) {
      std::vector<uint32_t> callees = CalleesOfTable(outside.name);
      for (const uint32_t call : CodeOf(outside.code).calls) {
        callees.push_back(CalleeOfCode(call));
      }
      std::unordered_set<uint32_t> known;
      for (const uint32_t callee : callees) {
        if (known.insert(callee).second) {
          outsideCallees_.push_back(callee);
        }
      }
    }
    outsideCalleeEnds_.push_back(static_cast<uint32_t>(outsideCallees_.size()));
  }
}

// It is called, and what it calls is then.
void ProgramLink::UseOutside(uint32_t outside) {
  std::vector<uint32_t> waiting = {outside};
  while (!waiting.empty()) {
    const uint32_t next = waiting.back();
    waiting.pop_back();
    if (std::exchange(outside_[next].isUsed, true)) {
      continue;
    }
    const uint32_t begin = next == 0 ? 0 : outsideCalleeEnds_[next - 1];
    for (uint32_t call = begin; call < outsideCalleeEnds_[next]; ++call) {
      if (IsOutside(outsideCallees_[call])) {
        waiting.push_back(outsideCallees_[call] - static_cast<uint32_t>(entities_.size()));
      }
    }
  }
}

// The source that a local name is of; the program for every other one.
const StkFileEntry& ProgramLink::FileOfCode(uint32_t code) {
  if (code != kNone) {
    const ProgramCode::Function& function = options_.program->Code().Functions()[code];
    const std::string_view name = NameOfCode(code);
    if (function.nameCount != 0 && options_.program->CodeNamed(name) != code) {
      const ObjectFunction& symbol = options_.program->Facts().Functions()[function.firstName];
      if (!symbol.file.empty()) {
        return database_->files.Add(symbol.file);
      }
    }
  }
  return database_->files.Add(LastComponent(options_.programPath));
}

void ProgramLink::EnterOutsideCode(const Outside& outside, StkFunction& entered) {
  const FunctionCode& code = CodeOf(outside.code);
  const bool isMeant = options_.program->CodeNamed(NameOf(outside.name)) == outside.code;
  entered.source = FunctionSource::kProgram;
  entered.frameSize = FrameOfCode(code, options_.machine);
  entered.flags |= isMeant ? uint32_t{FN_GLOBAL} : 0U;
  entered.flags |= code.isDynamic ? uint32_t{FN_DYNAMIC_FRAME} : 0U;
  entered.flags |= code.doubt != CodeDoubt::kNone ? uint32_t{FN_SIZE_UNKNOWN} : 0U;
  entered.flags |= !code.sites.empty() ? uint32_t{FN_INDIRECT_CALL} : 0U;
  entered.flags |= !code.usesFloatingPoint ? uint32_t{FN_NO_FLOATING_POINT} : 0U;
  AddSitesOfCode(outside.code, entered);
  if (const ToldFrames frames = FramesOf(code, 0); frames.Differ()) {
    entered.Told().frames = frames;
  }
}

// Where the frame is certain.
ToldFrames ProgramLink::FramesOf(const FunctionCode& code, uint32_t toldBytes) {
  if (code.doubt != CodeDoubt::kNone || code.isDynamic) {
    return {};
  }
  const auto shown = [](uint64_t bytes) {
    return static_cast<uint32_t>(std::min<uint64_t>(bytes, kOverSize));
  };
  return {shown(code.codeBytes), toldBytes, shown(code.callFrameBytes)};
}

// Of a function that units tell of.
void ProgramLink::EnterCodeOf(const Entity& entity, StkFunction& entered) const {
  if (entity.code == kNone) {
    return;
  }
  const FunctionCode& code = CodeOf(entity.code);
  entered.flags |= !code.usesFloatingPoint ? uint32_t{FN_NO_FLOATING_POINT} : 0U;
  entered.Told().frames = FramesOf(code, entity.toldBytes);
  if (entity.isRead) {
    entered.source = FunctionSource::kProgram;
    AddSitesOfCode(entity.code, entered);
  }
}

void ProgramLink::AddSitesOfCode(uint32_t code, StkFunction& function) const {
  for (const uint64_t address : CodeOf(code).sites) {
    function.Told().indirectSites.push_back({{}, address});
  }
}

// Whether the sizes of all its functions are known from their instructions.
bool ProgramLink::IsReadFromCode(const Unit& unit) const {
  for (uint32_t i = 0; i < unit.functions.size(); ++i) {
    const Entity& entity = entities_[entityOfPart_[unit.firstPart + i]];
    if (!unit.functions[i].isAlias && entity.isKept && entity.isSizeUnknown) {
      return false;
    }
  }
  return options_.program != nullptr;
}

void ProgramLink::PostCodeNotes(StkReporter& reporter) {
  if (options_.program == nullptr) {
    return;
  }
  size_t posted = 0;
  const auto post = [&](uint32_t code, uint32_t index, uint32_t toldBytes) {
    if (index != kNone && code != kNone && posted < kMostCodeNotes) {
      StkFunction& function = *database_->functions.Functions()[index];
      posted += PostCodeNote(CodeOf(code), toldBytes, function, reporter) ? size_t{1} : 0;
    }
  };
  for (uint32_t i = 0; i < entities_.size(); ++i) {
    post(entities_[i].code, indexOf_[i], entities_[i].toldBytes);
  }
  for (uint32_t i = 0; i < outside_.size(); ++i) {
    if (outside_[i].target == kNone) {
      post(outside_[i].code, indexOf_[entities_.size() + i], 0);
    }
  }
}

// What is not certain, or is told in two ways. False: there is nothing to tell.
bool ProgramLink::PostCodeNote(const FunctionCode& code, uint32_t toldBytes, StkFunction& function,
                               StkReporter& reporter) {
  const std::string name = std::string(function.name);
  const StkMessages& messages = reporter.Messages();
  StkNote note{.rule = "other-frame",
               .text = {},
               .file = std::string(options_.programPath),
               .function = function.index};
  if (code.doubt != CodeDoubt::kNone) {
    if (!function.Is(FN_SIZE_UNKNOWN)) {
      return false;
    }
    note.rule = "code-not-read";
    note.text = messages.FormatMessageText(
        MessageKey::kNoteCodeNotRead, {name, TextOf(code.doubt), TextOfAddress(code.doubtAddress)});
  } else if (toldBytes != 0 && code.codeBytes > toldBytes && !code.isDynamic) {
    note.text = messages.FormatMessageText(
        MessageKey::kNoteCodeLarger, {name, static_cast<uint32_t>(code.codeBytes), toldBytes});
  } else if (toldBytes == 0 && code.callFrameBytes != 0 && code.callFrameBytes != code.codeBytes &&
             !code.isDynamic) {
    note.text = messages.FormatMessageText(
        MessageKey::kNoteOtherFrame,
        {name, static_cast<uint32_t>(code.codeBytes), static_cast<uint32_t>(code.callFrameBytes)});
  } else {
    return false;
  }
  reporter.PostNote(std::move(note));
  return true;
}

}  // namespace velkor
