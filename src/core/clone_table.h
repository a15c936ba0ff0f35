#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "core/adjustment.h"
#include "core/function.h"

namespace velkor {

// How what is stated of a clone came to it.
struct CloneStatement {
  bool isOwn = false;    // a line names the clone itself; else it has what is stated of its base
  std::string baseLine;  // the name in the line that states it, where the base itself is gone

  bool operator==(const CloneStatement&) const = default;
};

// The functions that a compiler has made from others, their bases: a part of one, or one for
// certain arguments ("step.part.0" and "step.isra.1" of "step"). What a user states of the base
// holds for each clone that is not named itself. The base may be gone, when everything calls clones
// of it. Belongs to a function table, whose thread it is used in.
class CloneTable {
 public:
  // Marks it FN_CLONE. In the order of the table.
  void Add(StkFunction& clone, StkFunction& base);
  // The base is gone; its names are numbers of the function table. The first one added is its
  // symbol.
  void AddOfGone(StkFunction& clone, uint32_t baseName);

  // None for a function that is no clone, and where the base is gone.
  StkFunction* BaseOf(const StkFunction& clone) const;
  const StkFunctionList& Of(const StkFunction& base) const;
  // Those of all bases of that name that are gone.
  const StkFunctionList& OfGone(uint32_t baseName) const;
  // None where the base is there.
  std::optional<uint32_t> GoneBaseName(const StkFunction& clone) const;
  // Clones of the base of which no line of their own states anything.
  StkFunctionList Following(const StkFunction& base) const;

  const CloneStatement& Statement(const StkFunction& clone) const;
  void SetStatement(const StkFunction& clone, CloneStatement statement);
  // As read from a file of which what it states is not yet in force.
  void SetPending(const StkFunction& clone, CloneStatement statement);
  void PutPendingInForce();
  void DiscardPending() { pending_.clear(); }
  // All clones have what is stated of their base.
  void ForgetStatements() { statements_.clear(); }
  void Clear();

 private:
  // By index.
  std::unordered_map<uint32_t, StkFunction*> baseOf_;
  std::unordered_map<uint32_t, uint32_t> goneBaseOf_;  // its symbol
  std::unordered_map<uint32_t, StkFunctionList> clonesOf_;
  std::unordered_map<uint32_t, CloneStatement> statements_;
  std::unordered_map<uint32_t, CloneStatement> pending_;
  std::unordered_map<uint32_t, StkFunctionList> ofGone_;  // by name
};

// Of two functions: the source has one for them.
bool AreOfOneSource(const StkFunction& left, const StkFunction& right);

// What is stated, for this function: of all callees that are stated, those that it calls directly
// are told apart.
StkAdjustment AdjustmentFor(const StkFunction& function, const StkAdjustment& stated,
                            const CodePage& codePage);

}  // namespace velkor
