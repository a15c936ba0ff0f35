#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/function.h"
#include "core/name_table.h"
#include "messages/note.h"

namespace velkor {

// What a function on x86-64 that calls nothing may use below the stack pointer without saying so.
inline constexpr uint32_t kRedZone = 128;

// What the files of one translation unit (or of one partition of a program that is compiled while
// it is linked) tell: its functions and what they call. A value: refers to nothing outside, so that
// it is made in any thread and entered later.
struct UnitRecording {
  static constexpr uint32_t kNone = UINT32_MAX;

  // From where a function can be called by its name.
  enum class Reach : uint8_t {
    kUnknown,  // static or weak, which only a symbol table could tell
    kLocal,
    kWeak,
    kGlobal,
  };

  struct Function {
    uint32_t name = kNone;       // the linker's, in names
    uint32_t shownName = kNone;  // in names
    uint32_t file = kNone;       // of its place, in files
    uint32_t line = 0;
    uint32_t frameSize = 0;  // kOverSize above the limit
    Reach reach = Reach::kLocal;
    FunctionSource source = FunctionSource::kCallGraph;
    bool mayBeWeak = false;  // nothing tells whether it is static or weak
    bool isAlias = false;    // has no code of its own: calls the function that it stands for
    bool isDynamic = false;
    bool isSizeUnknown = false;
  };

  struct Call {
    uint32_t caller = 0;  // in functions
    uint32_t target = 0;  // in functions where it is local, else in names
    bool isLocal = false;
  };

  struct IndirectSite {
    uint32_t function = 0;
    uint32_t file = kNone;  // in files
    uint32_t line = 0;
    uint32_t column = 0;
  };

  struct Address {
    uint32_t target = 0;  // in functions where it is local, else in names
    bool isLocal = false;
  };

  // Keeps the memory for the next unit.
  void Clear();

  std::string title;             // the source as the compiler was told it
  bool isObject = false;         // there is no call graph of it
  bool isLinkTime = false;       // a partition: title is no source
  bool hasLinkTimeCode = false;  // its code is made when the program is linked
  bool isWhole = true;
  bool hasMachine = false;      // an object told it
  uint16_t machine = 0;         // of ELF
  std::string compilerVersion;  // empty: not told
  NameTable names;
  NameTable files;
  std::vector<Function> functions;
  std::vector<Call> calls;  // by caller
  std::vector<IndirectSite> indirectSites;
  std::vector<Address> takenAddresses;  // of functions, or of data that others define
  // By functions that make tasks: whose address they take. Some may be no functions.
  std::vector<Call> taskUses;
  std::vector<StkNote> notes;  // function: in functions
};

}  // namespace velkor
