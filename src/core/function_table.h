#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/clone_table.h"
#include "core/detail/call_name_lists.h"
#include "core/detail/caller_lists.h"
#include "core/detail/computation_order.h"
#include "core/detail/extra_caller_lists.h"
#include "core/detail/function_blocks.h"
#include "core/function.h"
#include "core/name_table.h"

namespace velkor {

class FunctionNameIndex;
struct Components;

// What the functions of an input have in common.
struct FunctionRules {
  uint32_t sizeLimit = kSizeLimit;  // the largest size in bytes; less than kOverSize
  bool underscored = true;          // the symbol of a C name is the name with "_" before it
};

// The line of a file that the input brings.
struct BroughtPlace {
  std::string path;
  uint32_t line = 0;
};

// A statement on a function that the input itself brings. It is in force instead of what the user
// keeps, which stays where it is kept.
struct BroughtStatement {
  BroughtPlace place;
  std::optional<StkAppliedAdjustment> kept;  // what it took the place of; none: nothing
  StkFunctionList keptCallees;
  StkFunctionList keptDirectCallees;
  CloneStatement keptOfClone;  // of a clone: how the former came to it
};

// What is stated of a function, as a specification file holds it. Valid until that changes.
struct KeptStatement {
  const StkAppliedAdjustment* adjustment = nullptr;
  const StkFunctionList& callees;  // extra ones
  const StkFunctionList& directCallees;

  bool None() const { return adjustment == nullptr && directCallees.empty(); }
};

// All functions of one analysis: owns the records, keeps their insertion order and finds them by
// name. Records are never removed one by one. Not locked: one thread at a time, which takes others
// to help it where it does something for all functions.
//
// A lookup answers the first match in insertion order among the records of exactly that name, in
// constant time on average, also where one name stands in very many files.
class StkFunctionTable {
 public:
  // threads: how many may work at once on what is done for all functions together; 0: as many as
  // run at once. Nothing depends on it but the time.
  explicit StkFunctionTable(const CodePage& codePage, FunctionRules rules = {},
                            size_t threads = 1);
  ~StkFunctionTable();
  StkFunctionTable(const StkFunctionTable&) = delete;
  StkFunctionTable& operator=(const StkFunctionTable&) = delete;

  const CodePage& GetCodePage() const { return codePage_; }
  uint32_t SizeLimit() const { return rules_.sizeLimit; }

  // The number that the table knows a name by until Clear: where names come again and again, it
  // takes the place of the text below.
  uint32_t NumberOfName(std::string_view name) { return names_.Intern(name); }
  std::string_view NameOf(uint32_t name) const { return names_[name]; }
  // Numbers of names are smaller.
  uint32_t NameCount() const { return names_.size(); }
  // The same of many, by their numbers in another table.
  std::vector<uint32_t> NumbersOfNames(const NameTable& names) { return names_.InternAll(names); }
  // A new FN_DEFINED record. The caller sets FN_GLOBAL and the rest on the result, before the
  // next lookup.
  StkFunction& AddDefined(uint32_t name, const StkFileEntry& file);
  StkFunction& AddDefined(std::string_view name, const StkFileEntry& file) {
    return AddDefined(NumberOfName(name), file);
  }
  // A new record of a function that is only called.
  StkFunction& AddUnknown(uint32_t name) { return Insert(name, nullptr, 0); }
  StkFunction& AddUnknown(std::string_view name) { return AddUnknown(NumberOfName(name)); }
  // What people read instead of the symbol; a specification file may name it by either.
  void SetShownName(StkFunction& function, uint32_t name);
  // The caller calls something of that name. Nothing happens when it has an equal call name
  // (case-sensitive) already. Call names are kept until ResolveAllCalls.
  void AddCallName(const StkFunction& caller, uint32_t callName);
  void AddCallName(const StkFunction& caller, std::string_view callName) {
    AddCallName(caller, NumberOfName(callName));
  }
  // In the order in which they were added.
  std::vector<std::string_view> CallNames(const StkFunction& caller) const;
  // A call of the function through a pointer is written with that name.
  void AddPointerName(const StkFunction& function, uint32_t name);
  // Without repetition, in the order in which they were added, the first 16 of them; none where the
  // input tells none.
  std::vector<std::string_view> PointerNames(const StkFunction& function) const;
  // Which function the name means in a call by caller; made anew as an unknown one when nothing
  // has that name. In this order: static in the caller's file, global in the caller's file, global
  // in another file, unknown.
  StkFunction& ResolveCall(const StkFunction& caller, std::string_view calleeName);
  // The same where something has that name, else none.
  StkFunction* FindCallee(const StkFunction& caller, std::string_view calleeName);
  // Every collected call name of every record; then the callees are sorted and the names gone.
  void ResolveAllCalls();
  // The same for an input that knows by itself which function each call means. Of all functions,
  // in place of the callees that they had.
  void SetAllCalls(const ResolvedCalls& calls);
  // Those whose callees, or whose extra callees at the last computation, the function is among; by
  // index, ascending. The first question takes time linear in the calls.
  std::span<const uint32_t> Callers(uint32_t function) const;
  std::span<const uint32_t> ExtraCallers(uint32_t function) const {
    return extraCallers_.Of(function);
  }
  // fileBaseName empty: the first global function of that name, else the first other one. Not
  // empty: the first static one whose file has that base name, ignoring letter case. The name is
  // the C name; where symbols have a "_" before it, one that is not bracketed and begins with "_"
  // is first looked up as it stands.
  StkFunction* FindBySpecName(std::string_view fileBaseName, std::string_view name,
                              bool bracketed) const;
  // All functions of that C name, in insertion order.
  StkFunctionList Namesakes(std::string_view cName) const;
  // Another record has the same name.
  bool SharesName(const StkFunction& function) const;
  // Another record has the same shown name.
  bool SharesShownName(const StkFunction& function) const;

  void SetLibrarySize(StkFunction& function, uint32_t size);
  void SetPendingAdjustment(StkFunction& function, StkAdjustment adjustment);
  void DiscardPendingAdjustments();
  // The adjustment becomes the one in force, whatever was there; the extra callees are the
  // caller's to change.
  void PutInForce(StkFunction& function, StkAppliedAdjustment adjustment);
  void PutPendingInForce(StkFunction& function);
  // Nothing where there is none.
  void TakeAdjustmentAway(StkFunction& function);
  // A file states these callees of the function, which it calls directly anyway: they change no
  // total, but settle what it calls indirectly. In force with PutDirectCalleesInForce; what several
  // lines state is taken together.
  void StateDirectCallees(const StkFunction& function, const StkFunctionList& callees);
  // The functions of which something was stated.
  StkFunctionList PutDirectCalleesInForce();
  // In place of what was in force.
  void SetDirectCallees(StkFunction& function, StkFunctionList callees);
  // In force.
  const StkFunctionList& DirectCallees(const StkFunction& function) const;
  // A file of the input is about to state something of the function, in place of what is in force
  // now, or of what the statement before has taken the place of.
  void NoteBrought(const StkFunction& function, std::string_view path, uint32_t line);
  // What was noted of the file that has been read, before what it states is put in
  // force.
  void PutBroughtInForce();
  // None: what is in force is the user's. (Its callees are the extra callees.)
  const BroughtStatement* Brought(const StkFunction& function) const;
  // What the user keeps under the statement that the input brings of this function. Of a clone:
  // how it came to it.
  void KeepUnderBrought(const StkFunction& function, const StkAdjustment& stated,
                        CloneStatement ofClone);
  KeptStatement Kept(const StkFunction& function) const;
  KeptStatement InForce(const StkFunction& function) const;
  CloneTable& Clones() { return clones_; }
  const CloneTable& Clones() const { return clones_; }
  // Those of bases of that C name, or shown name, that are gone.
  const StkFunctionList& ClonesOfGone(std::string_view baseName) const {
    return clones_.OfGone(names_.Find(baseName));
  }
  // How what is kept of a clone came to it.
  const CloneStatement& KeptOfClone(const StkFunction& clone) const;
  // The input brings what the function and all below it take, in bounds: nothing else of it is
  // looked at there. Marks it FN_TOTAL_STATED. Before the first computation.
  void BringTotal(StkFunction& function, uint32_t total);
  // Of a function so marked.
  uint32_t BroughtTotal(const StkFunction& function) const;
  // A callee list holds the same functions as before, but otherwise arranged: the next computation
  // takes the functions in the order of the new lists. (When other functions are called, the next
  // Recompute must rebuild instead.)
  void NoteRearrangedCallees() { order_ = ComputationOrder(); }
  // Records with a statement in force; with unknown functions: those too that are unknown and
  // not adjusted.
  uint32_t CountForSpecFile(bool withUnknown) const;
  void Clear();

  // In insertion order; index i holds the function whose index field is i.
  const StkFunctionList& Functions() const { return functions_; }
  // The index of one of them, without the wait for its record.
  uint32_t IndexOf(const StkFunction& function) const { return blocks_.IndexOf(function); }
  uint32_t Count() const { return static_cast<uint32_t>(functions_.size()); }
  uint32_t UnknownCount() const { return unknownCount_; }
  uint32_t AdjustedCount() const { return adjustedCount_; }
  // A top-level function's total was over the limit in the last computation.
  bool Overflow() const { return overLimitRoots_ != 0; }

 private:
  friend class StkComputation;
  friend class CalleeUpdate;
  friend class StkBounds;

  struct AddedCall {
    uint32_t caller = 0;
    uint32_t callee = 0;
  };
  // What has changed in a computed table, as far as a computation has taken it up.
  struct Changes {
    bool structure = true;      // anything may have changed, the calls too
    StkFunctionList functions;  // else: those touched, a function perhaps several times
    std::vector<AddedCall> addedCalls;  // else: which may have come, and concern no recursion
  };

  // Something that the function's own total depends on has changed.
  void Touch(StkFunction& function) { touched_.push_back(&function); }
  // What has been touched since it was last asked, a function perhaps several times.
  StkFunctionList TakeTouched();
  void NoteStructureChange() { changes_ = {}; }
  Changes TakeChanges() {
    return std::exchange(changes_, {.structure = false, .functions = {}, .addedCalls = {}});
  }

  StkFunction& Insert(uint32_t name, const StkFileEntry* file, uint32_t flags);
  StkFunction& ResolveCall(const StkFunction& caller, uint32_t calleeName);
  ResolvedCalls ResolveCallees();
  void FindCallees(uint32_t firstCaller, uint32_t endCaller, ResolvedCalls& calls) const;
  void SetCalls(uint32_t firstCaller, uint32_t endCaller, const ResolvedCalls& calls);

  const CodePage& codePage_;
  const FunctionRules rules_;
  const size_t threads_;
  NameTable names_;  // of functions and of calls
  CallNameLists callNames_;
  FunctionBlocks blocks_;
  StkFunctionList functions_;  // in blocks_
  StkFunctionList callees_;    // of all functions, caller after caller
  // None until it is asked for: most programs are computed once and never changed.
  mutable std::optional<CallerLists> callers_;
  ExtraCallerLists extraCallers_;
  StkFunctionList touched_;
  Changes changes_;
  std::unique_ptr<FunctionNameIndex> nameIndex_;
  // By index; what is stated may be an empty list.
  std::unordered_map<uint32_t, StkFunctionList> directCallees_;
  std::map<uint32_t, StkFunctionList> pendingDirectCallees_;
  std::unordered_map<uint32_t, std::vector<uint32_t>> pointerNames_;  // by index, in names_
  std::unordered_map<uint32_t, BroughtStatement> brought_;  // by index
  std::map<uint32_t, BroughtPlace> pendingBrought_;
  CloneTable clones_;
  std::unordered_map<uint32_t, uint32_t> broughtTotals_;  // by index
  uint32_t unknownCount_ = 0;
  uint32_t adjustedCount_ = 0;
  // Kept from one computation to the next of the same graph:
  ComputationOrder order_;  // empty when not known
  // Those that the bounds go by, of the calls as they are; none: to be found.
  std::unique_ptr<Components> boundComponents_;
  uint32_t overLimitRoots_ = 0;
  std::vector<bool> leadsToRecursion_;  // by index, a recursive one included; empty: not asked yet
  bool keepsTopLevel_ = false;          // a rebuilding of the same graph would mark the same
};

}  // namespace velkor
