#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <stop_token>
#include <string_view>
#include <vector>

#include "readers/gcc/code/code_image.h"
#include "readers/gcc/code/function_code.h"
#include "readers/gcc/code/function_walk.h"
#include "readers/gcc/code/instruction_decoder.h"
#include "readers/gcc/elf_file.h"
#include "readers/gcc/object_facts.h"

namespace velkor {

// Walks through all functions of a program, each as far as it is known whether what it calls comes
// back. Used once, in one thread.
class ProgramReading final : public CodeSurroundings {
 public:
  struct Function {
    uint64_t address = 0;    // without the bit for Thumb
    uint32_t firstName = 0;  // in the functions of the facts, aliases behind one another
    uint32_t nameCount = 0;  // 0: it has no name
    uint64_t start = 0;      // with the bit for Thumb
    uint64_t end = 0;
    std::vector<FunctionWalk::Part> parts;
    bool hasMoreParts = false;  // than are kept here
    TableHelper helper = TableHelper::kNone;
    Answer returns = Answer::kNotKnown;
    bool isStarted = false;
    std::unique_ptr<FunctionWalk> walk;  // from its start until all is known of it
    std::vector<uint32_t> waiting;       // callers
    FunctionCode code;
  };

  ProgramReading(const ElfFile& elf, const ObjectFacts& facts, InstructionDecoder& decoder);

  // unwanted: when it is asked to stop, the rest is left out.
  void Read(const std::stop_token& unwanted);
  // Those with names first, ordered by address.
  const std::vector<Function>& Functions() const { return functions_; }

  uint32_t FunctionAt(uint64_t address) const override;
  uint32_t CalledFunctionAt(uint64_t address) override;
  uint64_t NextFunction(uint64_t address) const override;
  uint32_t Imported(std::string_view name) override;
  Answer Returns(uint32_t function) const override { return functions_[function].returns; }
  TableHelper HelperAt(uint64_t address) const override;
  bool Spend(uint64_t instructions) override;
  bool TakeBlocks(int64_t count) override;

 private:
  void CollectFunctions();
  void AddFunction(uint32_t firstName, uint32_t nameCount);
  void AddPart(const ObjectFunction& symbol);
  void FindParts(Function& function) const;
  bool IsThumbAt(uint64_t address) const;
  void FindBounds(Function& function) const;
  void ReadReady(const std::stop_token& unwanted);
  void Continue(uint32_t function);
  void WaitFor(uint32_t caller, uint32_t callee);
  void Announce(uint32_t function, bool returns);
  void Finish(uint32_t function);

  const ElfFile& elf_;
  const ObjectFacts& facts_;
  const CodeImage image_;
  InstructionDecoder& decoder_;
  struct NamedPart {
    std::string_view function;
    std::string_view file;
    FunctionWalk::Part part;
  };

  std::vector<uint64_t> thumbStarts_;  // ascending
  std::vector<NamedPart> parts_;       // by function, then by file
  std::vector<Function> functions_;
  std::vector<uint64_t> namedAddresses_;  // of the first ones, ascending
  std::map<uint64_t, uint32_t> unnamed_;  // by address
  std::map<std::string_view, uint32_t> imported_;
  std::vector<uint32_t> ready_;
  uint64_t instructionsLeft_ = 0;
  int64_t blocksLeft_ = 0;
};

}  // namespace velkor
