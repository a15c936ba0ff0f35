#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "core/adjustment.h"
#include "core/file_table.h"
#include "core/function_list.h"

namespace velkor {

// Sizes are bytes up to the limit of their table, this one where its input states no other; a
// larger size is held as kOverSize.
constexpr uint32_t kSizeLimit = 65535;
constexpr uint32_t kOverSize = 0xFFFFFFFF;
constexpr int32_t kMaxChainCount = 2147483647;
constexpr uint32_t kFixedExtraSize = 6;

enum FunctionFlag : uint32_t {
  FN_DEFINED = 0x1,        // defined in an assembler source module file
  FN_GLOBAL = 0x2,         // public symbol; a defined function without it is static
  FN_INDIRECT_CALL = 0x8,  // makes a call whose target its module does not name
  FN_RECURSIVE = 0x10,     // can reach itself through callees and extra callees
  FN_ROOT = 0x20,          // top-level: stands in the root list
  FN_LIBRARY = 0x40,       // librarySize comes from a system library stack size table
  FN_FIXED_EXTRA = 0x100,  // librarySize is the fixed 6 bytes of a preset margin
  // What the totals know nothing of, but the bounds do:
  FN_HIDDEN_CALL = 0x1000,         // its code makes a call that its record does not list
  FN_DYNAMIC_FRAME = 0x2000,       // frameSize is only what the compiler knows of a larger frame
  FN_SIZE_UNKNOWN = 0x4000,        // defined, but nothing tells its frame size
  FN_PLAIN_SYMBOL = 0x8000,        // its symbol has no "_" before the C name
  FN_ENTRY = 0x10000,              // entered from outside: top-level, whatever calls it
  FN_NO_FLOATING_POINT = 0x40000,  // its instructions are known: none uses such a register
  FN_CALLS_STATED = 0x20000,       // callees are stated that it calls directly (see the table)
  FN_CLONE = 0x80000,              // the compiler made it from another function (CloneTable)
  FN_TOTAL_STATED = 0x100000,      // the input brings what it and all below it take (see the table)
  FN_TABLE_CALLS = 0x200000,       // its indirect calls go through a table: they are callees
  FN_ADDRESS_TAKEN = 0x800000,     // may be called through a pointer
};

// Where the frame and the calls of a function come from.
enum class FunctionSource : uint8_t { kNone, kModule, kCallGraph, kObject, kProgram };

// A place in a source file.
struct SourceLine {
  const StkFileEntry* file = nullptr;
  uint32_t line = 0;    // from 1; 0: not told
  uint32_t column = 0;  // likewise
};

// A place where a function calls through a pointer.
struct IndirectSite : SourceLine {
  uint64_t address = 0;  // in the linked program, of code without a source; 0: not told
};

// The frame of one function in bytes, as each way of reading it tells.
struct ToldFrames {
  uint32_t instructions = 0;
  uint32_t compiler = 0;   // its compiler; 0: not told
  uint32_t callFrame = 0;  // its call frame information; 0: not told

  bool Differ() const {
    const uint32_t others = compiler > callFrame ? compiler : callFrame;
    return others != 0 && instructions != others;
  }
};

// What an input tells of the source of a function, besides its file.
struct StkToldSource {
  std::string_view shownName;               // for people; empty: the C name
  SourceLine place;                         // of the definition
  std::vector<IndirectSite> indirectSites;  // where the function calls through a pointer
  ToldFrames frames;
};

// What a function is first of all, for its picture and for programs. Something is known of a
// specified one that does not come from a module: an adjustment or a library size.
enum class FunctionKind : uint8_t { kSpecified, kRecursive, kDefined, kUnknown };

// One function of the analysis. Made and owned by a StkFunctionTable, which also keeps the text of
// the name, until the table is cleared; lists of functions only refer to it. Not locked: one
// thread at a time. Once totals have been computed, what they depend on is changed by the
// operations of the table and the adjustments, which note it for the next computation.
struct StkFunction {
  std::string_view name;  // assembler symbol; FN_PLAIN_SYMBOL: without "_" before the C name
  const StkFileEntry* file = nullptr;  // its module's; none for a function that is only called
  uint32_t index = 0;                  // position in the table's insertion order
  uint32_t frameSize = 0;
  uint32_t flags = 0;
  FunctionSource source = FunctionSource::kNone;
  uint32_t librarySize = 0;             // added when there is no adjustment
  uint32_t totalStackSize = 0;          // result of Recompute
  uint32_t maxCalleeSize = 0;           // largest total among callees and extra callees
  int32_t chainCount = 1;               // call chains that start here, at most kMaxChainCount
  StkFunctionSpan callees;              // once resolved; sorted by name, no duplicates
  StkFunctionList extraCallees;         // targets of indirect calls, as the adjustment states them
  std::unique_ptr<StkToldSource> told;  // none where the input tells nothing
  std::unique_ptr<StkAdjustment> pendingAdjustment;  // read from a file, not yet applied
  std::unique_ptr<StkAppliedAdjustment> adjustment;  // in force; its presence: adjusted

  bool Is(uint32_t flag) const { return (flags & flag) != 0; }
  bool IsUnknown() const { return !Is(FN_DEFINED) && !Is(FN_LIBRARY); }
  // Something that a user states is in force.
  bool HasStatement() const { return adjustment != nullptr || Is(FN_CALLS_STATED); }
  bool IsStatic() const { return Is(FN_DEFINED) && !Is(FN_GLOBAL); }

  std::string_view ShownName() const { return told ? told->shownName : std::string_view(); }
  SourceLine Place() const { return told ? told->place : SourceLine(); }
  // To be filled; empty where there was none.
  StkToldSource& Told();

  FunctionKind Kind() const;
  bool CallsDirectly(const StkFunction& function) const;
  void SetFixedExtra();
};

}  // namespace velkor
