#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/name_table.h"
#include "messages/reporter.h"
#include "readers/gcc/linked_program.h"
#include "readers/gcc/table_call.h"
#include "readers/gcc/unit_recording.h"
#include "readers/program_facts.h"
#include "readers/program_input.h"

namespace velkor {

// Puts the functions of all units together as a linker does, and enters them: which units mean one
// function, and which function each call means. Where that is not certain, a function gets the
// larger frame and all calls that are possible, so that nothing is understated. Used in one thread.
class ProgramLink {
 public:
  // path: of the call graph file or object below the input's folder, without its ending.
  void Add(const UnitRecording& recording, std::string_view path, StkFunctionTable& functions);

  bool HasLinkTimeUnits() const { return hasLinkTimeUnits_; }

  struct Options {
    const LinkedProgram* program = nullptr;  // none: everything is taken to be linked
    std::string_view programPath;
    std::string_view vectors;  // the symbol of its vector table; empty: to be found
    uint16_t machine = 0;      // of units whose own is not told; 0: not known either
    std::span<const TableCall> tables;
    std::string_view tablesPath;  // of the file that states them
  };
  // Once, after all units. Notes are posted. Answers what functions have to do with in the facts of
  // the program; the rest of those is the program's to tell.
  ProgramFacts Enter(FunctionDatabase& database, const Options& options, StkReporter& reporter);

 private:
  using Reach = UnitRecording::Reach;
  static constexpr uint32_t kNone = UnitRecording::kNone;

  struct Unit {
    std::string title;
    std::string path;
    bool isObject = false;
    bool isLinkTime = false;
    bool isCovered = false;  // what the link has made of it stands in other units
    bool hasLinkTimeCode = false;
    bool hasMachine = false;
    uint32_t firstPart = 0;
    size_t nextCall = 0;  // while calls are linked
    std::vector<UnitRecording::Function> functions;  // names by the table's numbers
    std::vector<UnitRecording::Call> calls;          // likewise, by caller
    std::vector<UnitRecording::IndirectSite> sites;
    std::vector<UnitRecording::Address> addresses;
    std::vector<UnitRecording::Call> taskUses;
    std::vector<StkNote> notes;
  };

  // What becomes one function of the table. Parts are the functions of units, numbered through.
  struct Entity {
    uint32_t firstPart = 0;
    uint32_t frameSize = 0;
    uint32_t nextWeak = kNone;  // of the same name
    bool isGlobal = false;      // its name alone means it
    bool isReplaced = false;    // weak, where a strong one is linked
    bool isDynamic = false;
    bool isSizeUnknown = false;
    bool isKept = true;
    bool isEntry = false;
    uint32_t code = kNone;   // in what the instructions of the program tell
    bool isRead = false;     // its size and calls are of there
    uint32_t toldBytes = 0;  // its frame, as the compiler has told it
    bool isAddressTaken = false;
  };

  // A function that no unit tells: only called, or another name for one, or entered from outside,
  // or of a library, which the program's instructions tell of.
  struct Outside {
    uint32_t name = kNone;
    uint32_t target = kNone;  // a callee that it is an alias of
    uint32_t code = kNone;    // in what the instructions of the program tell
    bool isEntry = false;
    bool isPointed = false;
    bool isUsed = false;
  };

  // A function that the program's entry or a word of its vector table leads to.
  struct FoundEntry {
    uint32_t callee = kNone;
    uint32_t vector = 0;  // 0: the program's entry
    std::vector<std::string_view> names;
  };

  struct WeakPlace {
    uint32_t name;
    uint32_t line;
    std::string_view fileName;
    bool operator==(const WeakPlace&) const = default;
  };
  struct WeakPlaceHash {
    size_t operator()(const WeakPlace& place) const;
  };

  // Which parts are one function (program_link.cpp).
  void NumberParts();
  void DecideReaches();
  void MakeEntities();
  uint32_t EntityOfStrong(uint32_t part, const UnitRecording::Function& function);
  uint32_t EntityOfWeak(uint32_t part, const UnitRecording::Function& function);
  uint32_t AddEntity(uint32_t part, const UnitRecording::Function& function);
  void Merge(Entity& entity, const UnitRecording::Function& function) const;
  void SettleWeak();
  static std::string FileOf(const Unit& unit);
  void PostDuplicates(StkReporter& reporter);

  // What they call (program_link_calls.cpp).
  void LinkCalls();
  void LinkCallsOfPart(uint32_t entity, uint32_t part);
  static size_t FirstCallOf(const Unit& unit, uint32_t function);
  void AddCalleesByName(uint32_t caller, uint32_t name);
  void AddCallee(uint32_t caller, uint32_t callee);
  uint32_t OutsideOf(uint32_t name);
  uint32_t AliasTarget(uint32_t name);
  uint32_t EntityNamed(uint32_t name);
  void LeaveOutReplacedAliases();
  void ImproveFrames();

  // What the instructions of the program tell (program_link_code.cpp).
  void FindCode();
  void AddCallsOfCode(uint32_t entity);
  uint32_t CalleeOfCode(uint32_t code);
  uint32_t EntityOfCode(uint32_t code);
  std::string_view NameOfCode(uint32_t code) const;
  void ImproveByCode(Entity& entity) const;
  void AddPointedOutside();
  void LinkOutsideCode();
  void UseOutside(uint32_t outside);
  void EnterCodeOf(const Entity& entity, StkFunction& entered) const;
  void EnterOutsideCode(const Outside& outside, StkFunction& entered);
  const StkFileEntry& FileOfCode(uint32_t code);
  static uint32_t FrameOfCode(const FunctionCode& code, uint16_t machine);
  static ToldFrames FramesOf(const FunctionCode& code, uint32_t toldBytes);
  bool IsReadFromCode(const Unit& unit) const;
  void AddSitesOfCode(uint32_t code, StkFunction& function) const;
  void PostCodeNotes(StkReporter& reporter);
  bool PostCodeNote(const FunctionCode& code, uint32_t toldBytes, StkFunction& function,
                    StkReporter& reporter);
  const FunctionCode& CodeOf(uint32_t code) const {
    return options_.program->Code().Functions()[code].code;
  }

  void MarkTakenAddresses();
  void MarkTakenByName(uint32_t name);
  void LeaveOutUnlinked(StkReporter& reporter);

  // What the program tells (program_link_facts.cpp).
  void FindTables(StkReporter& reporter);
  std::vector<uint32_t> CalleesOfTable(uint32_t name);
  bool CallsThroughTable(uint32_t entity);
  uint32_t EntityAt(const std::vector<std::string_view>& names);
  void FindEntries();
  ProgramFacts CollectFacts();
  void CollectHandlers(ProgramFacts& facts);
  void CollectHandedTasks(ProgramFacts& facts);
  void CollectStaticTasks(ProgramFacts& facts);

  // Into the function table (program_link_entry.cpp).
  void NameModules();
  void EnterFunctions();
  void EnterClones();
  void EnterOutside();
  void EnterCalls();
  void EnterSites();
  void PostNotes(StkReporter& reporter);
  const StkFileEntry& ModuleFile(uint32_t part);
  const StkFileEntry* SourceFile(uint32_t file);

  const Unit& UnitOf(uint32_t part) const { return units_[unitOfPart_[part]]; }
  const UnitRecording::Function& FunctionOf(uint32_t part) const {
    const Unit& unit = UnitOf(part);
    return unit.functions[part - unit.firstPart];
  }
  std::string_view NameOf(uint32_t name) const { return database_->functions.NameOf(name); }
  bool IsOutside(uint32_t callee) const { return callee >= entities_.size(); }

  std::vector<Unit> units_;
  NameTable files_;  // of places
  bool hasLinkTimeUnits_ = false;

  // While functions are entered:
  FunctionDatabase* database_ = nullptr;
  Options options_;
  std::vector<uint32_t> unitOfPart_;
  std::vector<uint32_t> entityOfPart_;
  std::vector<Entity> entities_;
  std::vector<uint32_t> strongOfName_;  // an entity
  std::vector<uint32_t> weakOfName_;    // the first one
  std::vector<uint32_t> localOfName_;   // the only one; filled for EntityNamed
  std::unordered_map<WeakPlace, uint32_t, WeakPlaceHash> weakPlaces_;
  std::vector<uint32_t> duplicateParts_;
  std::vector<uint32_t> outsideOfName_;
  std::vector<Outside> outside_;  // callees are numbered behind the entities
  std::unordered_map<uint32_t, uint32_t> calleeOfCode_;
  std::vector<uint32_t> outsideCallees_;  // by outside function
  std::vector<uint32_t> outsideCalleeEnds_;
  std::vector<uint32_t> callees_;       // of kept entities when entered
  std::vector<uint32_t> calleeEnds_;    // by entity
  std::vector<uint32_t> latestCaller_;  // by callee, to tell equal ones apart
  std::vector<bool> hasSites_;          // by entity
  StkFunctionList clones_;
  std::unordered_map<uint32_t, std::string_view> tableOf_;  // by name of the caller
  std::vector<FoundEntry> foundEntries_;
  std::vector<uint32_t> indexOf_;  // in the table, by entity and outside function
  std::vector<const StkFileEntry*> sourceFiles_;
  std::vector<const StkFileEntry*> moduleFiles_;  // by unit
  std::unordered_map<uint32_t, const StkFileEntry*> linkTimeFiles_;
};

}  // namespace velkor
