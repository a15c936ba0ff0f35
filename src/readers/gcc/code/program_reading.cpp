#include "readers/gcc/code/program_reading.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace velkor {
namespace {

constexpr uint64_t kInstructionsPerByte = 8;
constexpr size_t kMostParts = 64;                // of one function
constexpr uint64_t kMostBlocksAtATime = 200000;  // of the functions that are read at a time

using TableHelper = CodeSurroundings::TableHelper;

struct HelperName {
  std::string_view name;
  TableHelper helper;
};

constexpr std::array kHelpers = {
    HelperName{"__gnu_thumb1_case_uqi", TableHelper::kBytes},
    HelperName{"__gnu_thumb1_case_sqi", TableHelper::kSignedBytes},
    HelperName{"__gnu_thumb1_case_uhi", TableHelper::kHalves},
    HelperName{"__gnu_thumb1_case_shi", TableHelper::kSignedHalves},
    HelperName{"__gnu_thumb1_case_si", TableHelper::kWords},
};

TableHelper HelperNamed(std::string_view name) {
  const auto found = std::ranges::find(kHelpers, name, &HelperName::name);
  return found == kHelpers.end() ? TableHelper::kNone : found->helper;
}

// Functions of shared libraries.
constexpr std::string_view kNeverReturning[] = {"__assert",
                                                "__assert_fail",
                                                "__assert_perror_fail",
                                                "__chk_fail",
                                                "__cxa_bad_cast",
                                                "__cxa_bad_typeid",
                                                "__cxa_call_unexpected",
                                                "__cxa_pure_virtual",
                                                "__cxa_rethrow",
                                                "__cxa_throw",
                                                "__cxa_throw_bad_array_new_length",
                                                "__fortify_fail",
                                                "__libc_start_main",
                                                "__longjmp_chk",
                                                "__stack_chk_fail",
                                                "_Exit",
                                                "_Unwind_Resume",
                                                "_exit",
                                                "_longjmp",
                                                "abort",
                                                "err",
                                                "errx",
                                                "exit",
                                                "longjmp",
                                                "pthread_exit",
                                                "quick_exit",
                                                "siglongjmp",
                                                "thrd_exit",
                                                "verr",
                                                "verrx",
                                                "_ZSt9terminatev",
                                                "_ZSt10unexpectedv"};

// A part of a function that is kept elsewhere.
bool IsPart(std::string_view name) {
  return name.ends_with(".cold") || name.find(".cold.") != std::string_view::npos;
}

}  // namespace

ProgramReading::ProgramReading(const ElfFile& elf, const ObjectFacts& facts,
                               InstructionDecoder& decoder)
    : elf_(elf),
      facts_(facts),
      image_(elf),
      decoder_(decoder),
      instructionsLeft_(image_.CodeBytes() * kInstructionsPerByte),
      blocksLeft_(static_cast<int64_t>(std::min(kMostBlocksAtATime, image_.CodeBytes()))) {
  CollectFunctions();
}

void ProgramReading::CollectFunctions() {
  for (const ElfSymbol& symbol : elf_.Symbols()) {
    if (elf_.Machine() == ELF_ARM && symbol.IsFunction() && (symbol.value & 1) != 0) {
      thumbStarts_.push_back(symbol.value & ~uint64_t{1});
    }
  }
  std::ranges::sort(thumbStarts_);
  const std::vector<ObjectFunction>& named = facts_.Functions();
  for (uint32_t first = 0; first < named.size();) {
    uint32_t end = first;
    while (end < named.size() && named[end].address == named[first].address &&
           named[end].section == named[first].section) {
      ++end;
    }
    AddFunction(first, end - first);
    first = end;
  }
  std::ranges::stable_sort(functions_, {}, &Function::address);
  const auto same = [](const Function& left, const Function& right) {
    return left.address == right.address;
  };
  functions_.erase(std::unique(functions_.begin(), functions_.end(), same), functions_.end());
  namedAddresses_.reserve(functions_.size());
  for (const Function& function : functions_) {
    namedAddresses_.push_back(function.address);
  }
  std::ranges::stable_sort(
      parts_, {}, [](const NamedPart& part) { return std::pair(part.function, part.file); });
  for (Function& function : functions_) {
    FindBounds(function);
    FindParts(function);
  }
}

void ProgramReading::AddFunction(uint32_t firstName, uint32_t nameCount) {
  const auto names = facts_.Functions().begin() + firstName;
  const bool isCode = !image_.CodeAt(names->address).empty() && !image_.IsData(names->address);
  const bool isPart = std::all_of(names, names + nameCount, [](const ObjectFunction& function) {
    return IsPart(function.name);
  });
  for (uint32_t i = 0; isCode && isPart && i < nameCount; ++i) {
    AddPart(names[i]);
  }
  if (isCode && !isPart) {
    Function& function = functions_.emplace_back();
    function.address = names->address;
    function.firstName = firstName;
    function.nameCount = nameCount;
  }
}

bool ProgramReading::IsThumbAt(uint64_t address) const {
  return image_.IsThumb(address).value_or(std::ranges::binary_search(thumbStarts_, address));
}

void ProgramReading::AddPart(const ObjectFunction& symbol) {
  const uint64_t end =
      symbol.address + std::min<uint64_t>(symbol.size, image_.CodeAt(symbol.address).size());
  parts_.push_back({symbol.name.substr(0, symbol.name.find(".cold")),
                    symbol.file,
                    {symbol.address | (IsThumbAt(symbol.address) ? 1U : 0U), end}});
}

// Those of a static function are of its file, as far as that is told.
void ProgramReading::FindParts(Function& function) const {
  const auto add = [&](std::string_view name, std::optional<std::string_view> file) {
    const auto order = [](const NamedPart& part) { return std::pair(part.function, part.file); };
    auto part = std::ranges::lower_bound(parts_, std::pair(name, file.value_or(std::string_view())),
                                         {}, order);
    for (; part != parts_.end() && part->function == name && (!file || part->file == *file);
         ++part) {
      function.hasMoreParts = function.parts.size() == kMostParts;
      if (function.hasMoreParts) {
        return;
      }
      function.parts.push_back(part->part);
    }
  };
  for (uint32_t i = 0; i < function.nameCount; ++i) {
    const ObjectFunction& name = facts_.Functions()[function.firstName + i];
    if (name.file.empty()) {
      add(name.name, std::nullopt);
    } else {
      add(name.name, name.file);
      add(name.name, std::string_view());
    }
  }
}

void ProgramReading::FindBounds(Function& function) const {
  const uint64_t address = function.address;
  const bool isThumb = IsThumbAt(address);
  uint64_t size = 0;
  for (uint32_t i = 0; i < function.nameCount; ++i) {
    const ObjectFunction& name = facts_.Functions()[function.firstName + i];
    size = std::max(size, name.size);
    function.helper = std::max(function.helper, HelperNamed(name.name));
  }
  const uint64_t codeSize = image_.CodeAt(address).size();
  const uint64_t most = size != 0 ? size : NextFunction(address) - address;
  function.start = isThumb ? address | 1 : address;
  function.end = address + std::min({most, codeSize, UINT64_MAX - address});
}

uint32_t ProgramReading::FunctionAt(uint64_t address) const {
  const uint64_t place = image_.Place(address);
  const auto found = std::ranges::lower_bound(namedAddresses_, place);
  if (found != namedAddresses_.end() && *found == place) {
    return static_cast<uint32_t>(found - namedAddresses_.begin());
  }
  const auto unnamed = unnamed_.find(place);
  return unnamed == unnamed_.end() ? kNone : unnamed->second;
}

uint64_t ProgramReading::NextFunction(uint64_t address) const {
  const auto found = std::ranges::upper_bound(namedAddresses_, image_.Place(address));
  return found == namedAddresses_.end() ? UINT64_MAX : *found;
}

uint32_t ProgramReading::CalledFunctionAt(uint64_t address) {
  const uint64_t place = image_.Place(address);
  if (const uint32_t known = FunctionAt(place); known != kNone) {
    return known;
  }
  const std::string_view code = image_.CodeAt(place);
  if (code.empty() || image_.IsData(place)) {
    return kNone;
  }
  const auto number = static_cast<uint32_t>(functions_.size());
  Function& function = functions_.emplace_back();
  function.address = place;
  function.start = address;
  function.end = place + std::min<uint64_t>(NextFunction(place) - place, code.size());
  unnamed_[place] = number;
  return number;
}

uint32_t ProgramReading::Imported(std::string_view name) {
  const auto [known, isNew] = imported_.try_emplace(name, static_cast<uint32_t>(functions_.size()));
  if (isNew) {
    Function& function = functions_.emplace_back();
    function.isStarted = true;
    function.returns = std::ranges::find(kNeverReturning, name) == std::end(kNeverReturning)
                           ? Answer::kYes
                           : Answer::kNo;
    function.code.import = name;
    function.code.returns = function.returns == Answer::kYes;
  }
  return known->second;
}

CodeSurroundings::TableHelper ProgramReading::HelperAt(uint64_t address) const {
  const uint32_t function = FunctionAt(address);
  return function == kNone ? TableHelper::kNone : functions_[function].helper;
}

bool ProgramReading::Spend(uint64_t instructions) {
  const bool isLeft = instructionsLeft_ >= instructions;
  instructionsLeft_ -= isLeft ? instructions : 0;
  return isLeft;
}

bool ProgramReading::TakeBlocks(int64_t count) {
  const bool isLeft = blocksLeft_ >= count;
  blocksLeft_ -= isLeft ? count : 0;
  return isLeft;
}

void ProgramReading::Read(const std::stop_token& unwanted) {
  for (uint32_t i = 0; i < namedAddresses_.size(); ++i) {
    if (!functions_[i].isStarted) {
      ready_.push_back(i);
      ReadReady(unwanted);
    }
  }
  // Those that are left wait for one another: none of them comes back, as far as is known.
  for (uint32_t i = 0; i < functions_.size(); ++i) {
    if (functions_[i].walk != nullptr) {
      functions_[i].walk->Sweep();
      if (functions_[i].walk->Returns() && functions_[i].returns == Answer::kNotKnown) {
        Announce(i, true);
      }
      ReadReady(unwanted);
    }
  }
  for (uint32_t i = 0; i < functions_.size(); ++i) {
    if (functions_[i].walk != nullptr) {
      Finish(i);
    }
  }
}

void ProgramReading::ReadReady(const std::stop_token& unwanted) {
  while (!ready_.empty() && !unwanted.stop_requested()) {
    const uint32_t function = ready_.back();
    ready_.pop_back();
    Continue(function);
  }
}

// As far as it goes now. What it waits for comes next.
void ProgramReading::Continue(uint32_t number) {
  if (!functions_[number].isStarted) {
    const Function& function = functions_[number];
    const FunctionWalk::Range range{.function = number,
                                    .start = function.start,
                                    .end = function.end,
                                    .isHelper = function.helper != TableHelper::kNone,
                                    .isWhole = function.nameCount != 0,
                                    .parts = function.parts,
                                    .hasMoreParts = function.hasMoreParts};
    functions_[number].isStarted = true;
    functions_[number].walk = std::make_unique<FunctionWalk>(image_, decoder_, *this, range);
  }
  FunctionWalk* walk = functions_[number].walk.get();
  if (walk == nullptr) {
    return;
  }
  walk->Run();
  if (!walk->IsWaiting()) {
    walk->Sweep();
  }
  if (walk->Returns() && functions_[number].returns == Answer::kNotKnown) {
    Announce(number, true);
  }
  if (!walk->IsWaiting()) {
    return Finish(number);
  }
  for (const uint32_t callee : walk->TakeNewWaits()) {
    WaitFor(number, callee);
  }
}

void ProgramReading::WaitFor(uint32_t caller, uint32_t callee) {
  Function& called = functions_[callee];
  if (called.returns != Answer::kNotKnown) {
    functions_[caller].walk->Settle(callee, called.returns == Answer::kYes);
    ready_.push_back(caller);
    return;
  }
  called.waiting.push_back(caller);
  if (!called.isStarted) {
    ready_.push_back(callee);
  }
}

void ProgramReading::Announce(uint32_t function, bool returns) {
  functions_[function].returns = returns ? Answer::kYes : Answer::kNo;
  for (const uint32_t caller : std::exchange(functions_[function].waiting, {})) {
    if (functions_[caller].walk != nullptr) {
      functions_[caller].walk->Settle(function, returns);
      ready_.push_back(caller);
    }
  }
}

void ProgramReading::Finish(uint32_t function) {
  functions_[function].code = functions_[function].walk->Result();
  functions_[function].walk = nullptr;
  if (functions_[function].returns == Answer::kNotKnown) {
    Announce(function, functions_[function].code.returns);
  }
}

}  // namespace velkor
