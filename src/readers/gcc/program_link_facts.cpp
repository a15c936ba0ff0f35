#include <algorithm>
#include <tuple>

#include "readers/gcc/program_link.h"

namespace velkor {

void ProgramLink::FindTables(StkReporter& reporter) {
  if (options_.program == nullptr) {
    return;
  }
  for (const TableCall& call : options_.tables) {
    const uint32_t name = database_->functions.NumberOfName(call.function);
    const bool isThere = EntityNamed(name) != kNone || options_.program->HasFunction(call.function);
    const bool hasFunctions = !options_.program->PointersIn(call.table).functions.empty();
    if (isThere && hasFunctions) {
      tableOf_[name] = call.table;
      continue;
    }
    const StkMessages& messages = reporter.Messages();
    reporter.PostNote(
        {.rule = "entry-not-found",
         .text = !isThere ? messages.FormatMessageText(MessageKey::kNoteNoCaller, {call.function})
                          : messages.FormatMessageText(MessageKey::kNoteNoTable, {call.table}),
         .file = std::string(options_.tablesPath),
         .line = call.place.line,
         .column = call.place.column,
         .function = {},
         .incomplete = true});
  }
}

// What the function of that name calls through its table.
std::vector<uint32_t> ProgramLink::CalleesOfTable(uint32_t name) {
  std::vector<uint32_t> callees;
  const auto table = tableOf_.find(name);
  if (table == tableOf_.end()) {
    return callees;
  }
  for (const std::vector<std::string_view>& names :
       options_.program->PointersIn(table->second).functions) {
    const uint32_t target = EntityAt(names);
    callees.push_back(
        target != kNone ? target : OutsideOf(database_->functions.NumberOfName(names.front())));
  }
  return callees;
}

bool ProgramLink::CallsThroughTable(uint32_t entity) {
  if (tableOf_.empty()) {
    return false;
  }
  const uint32_t name = FunctionOf(entities_[entity].firstPart).name;
  return tableOf_.contains(name) && EntityNamed(name) == entity;
}

// What has the code of these names: one that is no alias, where there is one.
uint32_t ProgramLink::EntityAt(const std::vector<std::string_view>& names) {
  uint32_t found = kNone;
  for (const std::string_view name : names) {
    const uint32_t entity = EntityNamed(database_->functions.NumberOfName(name));
    if (entity != kNone && (found == kNone || FunctionOf(entities_[found].firstPart).isAlias)) {
      found = entity;
    }
  }
  return found;
}

void ProgramLink::FindEntries() {
  if (options_.program == nullptr) {
    return;
  }
  for (LinkedProgram::Entry& entry : options_.program->Entries(options_.vectors)) {
    uint32_t callee = EntityAt(entry.names);
    if (callee != kNone) {
      entities_[callee].isEntry = true;
    } else if (entry.vector != 0) {
      callee = OutsideOf(database_->functions.NumberOfName(entry.names.front()));
      outside_[callee - entities_.size()].isEntry = true;
    }
    if (callee != kNone) {
      foundEntries_.push_back({callee, entry.vector, std::move(entry.names)});
    }
  }
}

ProgramFacts ProgramLink::CollectFacts() {
  ProgramFacts facts;
  CollectHandlers(facts);
  CollectHandedTasks(facts);
  CollectStaticTasks(facts);
  const auto order = [](const ProgramFacts::Task& task) {
    return std::tie(task.function, task.creator);
  };
  std::ranges::stable_sort(facts.tasks, {}, order);
  const auto same = [&](const ProgramFacts::Task& left, const ProgramFacts::Task& right) {
    return left.function == right.function;
  };
  facts.tasks.erase(std::unique(facts.tasks.begin(), facts.tasks.end(), same), facts.tasks.end());
  return facts;
}

// The first word of a table is a stack pointer, and the second one where the program begins.
void ProgramLink::CollectHandlers(ProgramFacts& facts) {
  for (const FoundEntry& entry : foundEntries_) {
    const uint32_t function = indexOf_[entry.callee];
    facts.hasVectors = facts.hasVectors || entry.vector != 0;
    if (function == kNone) {
      continue;
    }
    const bool isTable = options_.program->HasPointerVectors();
    if (entry.vector == 0 || (isTable && entry.vector == 1)) {
      facts.entry = entry.vector == 1 ? function : facts.entry.value_or(function);
      continue;
    }
    auto handler = std::ranges::find(facts.handlers, function, &ProgramFacts::Handler::function);
    if (handler == facts.handlers.end()) {
      handler = facts.handlers.insert(handler, {.function = function, .names = {}});
    }
    for (const std::string_view name : entry.names) {
      if (std::ranges::find(handler->names, name) == handler->names.end()) {
        handler->names.emplace_back(name);
      }
    }
  }
}

void ProgramLink::CollectHandedTasks(ProgramFacts& facts) {
  for (const Unit& unit : units_) {
    for (const UnitRecording::Call& use : unit.taskUses) {
      const uint32_t entity =
          use.isLocal ? entityOfPart_[unit.firstPart + use.target] : EntityNamed(use.target);
      const uint32_t creator = indexOf_[entityOfPart_[unit.firstPart + use.caller]];
      if (entity != kNone && indexOf_[entity] != kNone && creator != kNone) {
        facts.tasks.push_back({.function = indexOf_[entity],
                               .stack = {},
                               .creator = std::string(NameOf(unit.functions[use.caller].name))});
      }
    }
  }
}

void ProgramLink::CollectStaticTasks(ProgramFacts& facts) {
  if (options_.program == nullptr) {
    return;
  }
  for (const std::string_view object : options_.program->ObjectsThatBegin("_k_thread_data_")) {
    const LinkedProgram::Pointers pointers = options_.program->PointersIn(object);
    const auto stack = std::ranges::find_if(pointers.objects, [](std::string_view name) {
      return name.find("stack") != std::string_view::npos;
    });
    for (const std::vector<std::string_view>& names : pointers.functions) {
      if (const uint32_t entity = EntityAt(names); entity != kNone && indexOf_[entity] != kNone) {
        facts.tasks.push_back({.function = indexOf_[entity],
                               .stack = std::string(stack == pointers.objects.end() ? "" : *stack),
                               .creator = std::string(object)});
      }
    }
  }
}

}  // namespace velkor
