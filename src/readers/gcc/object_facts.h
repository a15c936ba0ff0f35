#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "readers/gcc/branch_relocation.h"
#include "readers/gcc/elf_file.h"

namespace velkor {

enum class FunctionReach : uint8_t { kLocal, kGlobal, kWeak };

// A symbol of code. Several may stand for the same code: aliases.
struct ObjectFunction {
  std::string_view name;
  std::string_view
      file;              // of a local one in a linked program: the source it is of, if that is told
  uint64_t address = 0;  // the place within the section, or the address; no bit for Thumb in it
  uint64_t size = 0;     // 0 where it is not told
  uint32_t section = 0;
  FunctionReach reach = FunctionReach::kLocal;
  bool isTyped = false;  // false: only its section says that it is code (an assembler's label)
};

// A call or jump from one function to the start of another that a relocation tells.
struct ObjectCall {
  static constexpr uint32_t kNoFunction = UINT32_MAX;

  std::string_view target;                // its name, as the relocation or the function has it
  uint32_t targetFunction = kNoFunction;  // where the object holds it
  uint32_t caller = kNoFunction;          // none: code outside of all functions
  uint32_t section = 0;
  uint64_t offset = 0;
  bool isJump = false;
};

// A function whose address the code or the data of an object takes.
struct TakenAddress {
  std::string_view target;                            // its name
  uint32_t targetFunction = ObjectCall::kNoFunction;  // where the object holds it
};

// What an object or a linked program tells of its functions. Views into the bytes of the file,
// which must outlive it.
class ObjectFacts {
 public:
  explicit ObjectFacts(const ElfFile& elf);

  // Ordered by section and address: aliases follow one another.
  const std::vector<ObjectFunction>& Functions() const { return functions_; }
  // The first of that name, kNoFunction otherwise. A linked program may have more of them.
  uint32_t Find(std::string_view name) const;
  // The first function with the same code, the same for all aliases of it.
  uint32_t FirstAlias(uint32_t function) const;
  // Whose code holds the place, the first of aliases; kNoFunction otherwise.
  uint32_t FunctionAt(uint32_t section, uint64_t address) const;

  // In an object, ordered by section and place. Calls that the assembler resolved itself, within
  // one section, are not among them on most machines.
  const std::vector<ObjectCall>& Calls() const { return calls_; }
  // In an object, each function once, in no order that matters. Where calls are not
  // known, only those that data takes.
  const std::vector<TakenAddress>& TakenAddresses() const { return takenAddresses_; }
  // False: how calls look on this machine is not known, and Calls() is empty.
  bool KnowsCalls() const { return knowsCalls_; }

  // The first compiler that put its name into the file, "" when none did (assembler sources).
  std::string_view Compiler() const { return compiler_; }
  // Its code is made when the program is linked.
  bool HasLinkTimeCode() const { return hasLinkTimeCode_; }

  const BinaryFaults& Faults() const { return faults_; }

 private:
  void CollectFunctions();
  bool IsFunction(const ElfSymbol& symbol) const;
  void CollectRelocations(uint32_t section);
  void CollectCall(uint32_t section, const ElfRelocation& relocation,
                   const BranchRelocation& branch);
  void CollectAddress(uint32_t section, const ElfRelocation& relocation);
  void TakePlace(uint32_t section, uint64_t address);
  void TakeAddress(const TakenAddress& taken);
  void AddCall(const ElfSymbol& symbol, int64_t addend, ObjectCall call);
  uint64_t AddressOf(const ElfSymbol& symbol) const;
  void ReadCompiler();

  const ElfFile& elf_;
  std::vector<ObjectFunction> functions_;
  std::unordered_map<std::string_view, uint32_t> byName_;
  std::vector<ObjectCall> calls_;
  std::vector<TakenAddress> takenAddresses_;
  std::unordered_set<std::string_view> namesTaken_;  // asked, never walked
  std::string_view compiler_;
  bool knowsCalls_ = false;
  bool hasLinkTimeCode_ = false;
  BinaryFaults faults_;
};

}  // namespace velkor
