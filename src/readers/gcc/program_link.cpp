#include "readers/gcc/program_link.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

constexpr size_t kMostDuplicates = 20;  // that are noted each

}  // namespace

size_t ProgramLink::WeakPlaceHash::operator()(const WeakPlace& place) const {
  return std::hash<std::string_view>()(place.fileName) ^
         (uint64_t{place.name} << 32 | place.line) * 0x9E3779B97F4A7C15U;
}

void ProgramLink::Add(const UnitRecording& recording, std::string_view path,
                      StkFunctionTable& functions) {
  const std::vector<uint32_t> names = functions.NumbersOfNames(recording.names);
  const std::vector<uint32_t> files = files_.InternAll(recording.files);
  Unit& unit = units_.emplace_back();
  unit.title = recording.title;
  unit.path = path;
  unit.isObject = recording.isObject;
  unit.isLinkTime = recording.isLinkTime;
  unit.hasLinkTimeCode = recording.hasLinkTimeCode;
  unit.hasMachine = recording.hasMachine;
  unit.functions = recording.functions;
  for (UnitRecording::Function& function : unit.functions) {
    function.name = names[function.name];
    function.shownName = function.shownName == kNone ? kNone : names[function.shownName];
    function.file = function.file == kNone ? kNone : files[function.file];
  }
  unit.calls = recording.calls;
  for (UnitRecording::Call& call : unit.calls) {
    call.target = call.isLocal ? call.target : names[call.target];
  }
  unit.sites = recording.indirectSites;
  for (UnitRecording::IndirectSite& site : unit.sites) {
    site.file = site.file == kNone ? kNone : files[site.file];
  }
  unit.addresses = recording.takenAddresses;
  for (UnitRecording::Address& address : unit.addresses) {
    address.target = address.isLocal ? address.target : names[address.target];
  }
  unit.taskUses = recording.taskUses;
  for (UnitRecording::Call& use : unit.taskUses) {
    use.target = use.isLocal ? use.target : names[use.target];
  }
  unit.notes = recording.notes;
  hasLinkTimeUnits_ = hasLinkTimeUnits_ || recording.isLinkTime;
}

ProgramFacts ProgramLink::Enter(FunctionDatabase& database, const Options& options,
                                StkReporter& reporter) {
  database_ = &database;
  options_ = options;
  NumberParts();
  DecideReaches();
  MakeEntities();
  SettleWeak();
  FindCode();
  FindTables(reporter);
  LinkCalls();
  LeaveOutReplacedAliases();
  ImproveFrames();
  FindEntries();
  AddPointedOutside();
  LinkOutsideCode();
  MarkTakenAddresses();
  LeaveOutUnlinked(reporter);
  NameModules();
  EnterFunctions();
  EnterClones();
  EnterOutside();
  EnterCalls();
  EnterSites();
  PostDuplicates(reporter);
  PostNotes(reporter);
  PostCodeNotes(reporter);
  ProgramFacts facts = CollectFacts();
  *this = ProgramLink();
  return facts;
}

// What was compiled for linking, and then linked, is told by the units of the link.
void ProgramLink::NumberParts() {
  for (uint32_t i = 0; i < units_.size(); ++i) {
    Unit& unit = units_[i];
    unit.isCovered = unit.hasLinkTimeCode && hasLinkTimeUnits_ && !unit.isLinkTime;
    if (unit.isCovered) {
      unit.functions.clear();
      unit.calls.clear();
      unit.sites.clear();
      unit.addresses.clear();
      unit.taskUses.clear();
    }
    unit.firstPart = static_cast<uint32_t>(unitOfPart_.size());
    unitOfPart_.resize(unitOfPart_.size() + unit.functions.size(), i);
  }
}

// Where no object has told whether a function is static or weak, the program may.
void ProgramLink::DecideReaches() {
  for (Unit& unit : units_) {
    for (UnitRecording::Function& function : unit.functions) {
      if (function.reach == Reach::kUnknown) {
        const Reach reach = options_.program != nullptr
                                ? options_.program->ReachOf(NameOf(function.name))
                                : Reach::kLocal;
        const bool isWeak = reach == Reach::kWeak || reach == Reach::kGlobal;
        function.reach = isWeak ? Reach::kWeak : Reach::kLocal;
        function.mayBeWeak = !isWeak && (options_.program == nullptr || reach == Reach::kUnknown);
      }
    }
  }
}

void ProgramLink::MakeEntities() {
  const uint32_t names = database_->functions.NameCount();
  strongOfName_.assign(names, kNone);
  weakOfName_.assign(names, kNone);
  entityOfPart_.reserve(unitOfPart_.size());
  for (uint32_t part = 0; part < unitOfPart_.size(); ++part) {
    const UnitRecording::Function& function = FunctionOf(part);
    uint32_t entity = kNone;
    if (function.reach == Reach::kGlobal) {
      entity = EntityOfStrong(part, function);
    } else if (function.reach == Reach::kWeak) {
      entity = EntityOfWeak(part, function);
    } else {
      entity = AddEntity(part, function);
    }
    entityOfPart_.push_back(entity);
  }
}

uint32_t ProgramLink::EntityOfStrong(uint32_t part, const UnitRecording::Function& function) {
  uint32_t& entity = strongOfName_[function.name];
  if (entity == kNone) {
    entity = AddEntity(part, function);
    entities_[entity].isGlobal = true;
  } else {
    Merge(entities_[entity], function);
    duplicateParts_.push_back(part);
  }
  return entity;
}

// One inline function or instance is told by every unit that uses it.
uint32_t ProgramLink::EntityOfWeak(uint32_t part, const UnitRecording::Function& function) {
  const std::string_view file =
      function.file == kNone ? std::string_view() : LastComponent(files_[function.file]);
  const auto [place, isNew] = weakPlaces_.try_emplace({function.name, function.line, file}, kNone);
  if (isNew) {
    place->second = AddEntity(part, function);
    uint32_t& first = weakOfName_[function.name];
    entities_[place->second].nextWeak = std::exchange(first, place->second);
  } else {
    Merge(entities_[place->second], function);
  }
  return place->second;
}

uint32_t ProgramLink::AddEntity(uint32_t part, const UnitRecording::Function& function) {
  Entity& entity = entities_.emplace_back();
  entity.firstPart = part;
  Merge(entity, function);
  return static_cast<uint32_t>(entities_.size() - 1);
}

void ProgramLink::Merge(Entity& entity, const UnitRecording::Function& function) const {
  entity.frameSize = std::max(entity.frameSize, function.frameSize);
  entity.isDynamic = entity.isDynamic || function.isDynamic;
  entity.isSizeUnknown = entity.isSizeUnknown || function.isSizeUnknown;
}

void ProgramLink::SettleWeak() {
  for (uint32_t name = 0; name < weakOfName_.size(); ++name) {
    const bool isReplaced = strongOfName_[name] != kNone;
    const uint32_t first = weakOfName_[name];
    for (uint32_t weak = first; weak != kNone; weak = entities_[weak].nextWeak) {
      Entity& entity = entities_[weak];
      entity.isReplaced = isReplaced;
      entity.isGlobal = !isReplaced && entities_[first].nextWeak == kNone;
    }
  }
}

// As the user finds it.
std::string ProgramLink::FileOf(const Unit& unit) {
  return unit.path + (unit.isObject ? "" : ".ci");
}

void ProgramLink::PostDuplicates(StkReporter& reporter) {
  size_t noted = 0;
  for (const uint32_t part : duplicateParts_) {
    const Entity& entity = entities_[entityOfPart_[part]];
    if (!entity.isKept || noted == kMostDuplicates) {
      continue;
    }
    ++noted;
    const UnitRecording::Function& function = FunctionOf(part);
    const bool isLast = noted == kMostDuplicates && duplicateParts_.size() > noted;
    const Unit& first = UnitOf(entity.firstPart);
    const Unit& other = UnitOf(part);
    const std::string more =
        isLast ? " (and " + std::to_string(duplicateParts_.size() - noted) + " more)" : "";
    reporter.PostNote(
        {.rule = "duplicate-definition",
         .text = reporter.Messages().FormatMessageText(
             first.title == other.title ? MessageKey::kNoteDuplicateOfSource
                                        : MessageKey::kNoteDuplicate,
             {NameOf(function.name), FileOf(first), FileOf(other), more}),
         .file = function.file == kNone ? std::string() : std::string(files_[function.file]),
         .line = function.line,
         .function = indexOf_[entityOfPart_[part]]});
  }
}

}  // namespace velkor
