#include "reports/analysis_reader.h"

#include <algorithm>
#include <array>
#include <map>
#include <rapidjson/filereadstream.h>
#include <rapidjson/reader.h>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/bound_arithmetic.h"
#include "reports/json_output.h"

namespace velkor::reports {
namespace {

// What stands behind a key that matters, on whichever level.
enum class Field {
  kNone,
  kSchema,
  kGenerator,
  kProject,
  kLimit,
  kGroups,
  kFunctions,
  kMembers,
  kActivations,
  kName,
  kSpecName,
  kStatement,
  kFile,
  kLine,
  kTopLevel,
  kLibrary,
  kFixedExtra,
  kFrameSize,
  kFrameText,
  kBoundState,
  kKnown,
  kReasons,
  kReasonKind,
  kReasonFunction,
  kLibrarySize,
  kMargin,
  kDepth,
  kGroup,
  kCallees,
};

using Keys = std::map<std::string_view, Field>;

// By level: of the whole, of a function or group, of a reason.
const Keys& KeysOf(size_t level) {
  static const Keys kWhole = {{"schema", Field::kSchema},   {"generator", Field::kGenerator},
                              {"project", Field::kProject}, {"limit", Field::kLimit},
                              {"groups", Field::kGroups},   {"functions", Field::kFunctions}};
  static const Keys kParts = {{"members", Field::kMembers},
                              {"activations", Field::kActivations},
                              {"name", Field::kName},
                              {"specName", Field::kSpecName},
                              {"statement", Field::kStatement},
                              {"file", Field::kFile},
                              {"line", Field::kLine},
                              {"topLevel", Field::kTopLevel},
                              {"library", Field::kLibrary},
                              {"fixedExtra", Field::kFixedExtra},
                              {"frameSize", Field::kFrameSize},
                              {"frameText", Field::kFrameText},
                              {"boundState", Field::kBoundState},
                              {"known", Field::kKnown},
                              {"reasons", Field::kReasons},
                              {"librarySize", Field::kLibrarySize},
                              {"margin", Field::kMargin},
                              {"depth", Field::kDepth},
                              {"group", Field::kGroup},
                              {"callees", Field::kCallees},
                              {"extraCallees", Field::kCallees}};
  static const Keys kReason = {{"kind", Field::kReasonKind}, {"function", Field::kReasonFunction}};
  static const Keys kNothing;
  constexpr size_t kWholeLevel = 1;
  constexpr size_t kPartLevel = 3;
  constexpr size_t kReasonLevel = 5;
  return level == kWholeLevel    ? kWhole
         : level == kPartLevel   ? kParts
         : level == kReasonLevel ? kReason
                                 : kNothing;
}

class AnalysisHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, AnalysisHandler> {
 public:
  bool Key(const char* text, rapidjson::SizeType length, bool) {
    const Keys& keys = KeysOf(open_.size());
    const auto found = keys.find({text, length});
    const Field field = found == keys.end() ? Field::kNone : found->second;
    open_.back() = field;
    return true;
  }
  bool StartObject() {
    if (open_.size() == 2 && open_[0] == Field::kFunctions) {
      StartFunction();
    } else if (open_.size() == 2 && open_[0] == Field::kGroups) {
      analysis_.groups.emplace_back();
      analysis_.activations.push_back(0);
    } else if (InReasons() && open_.size() == 4) {
      analysis_.reasons.emplace_back();
    }
    return Open();
  }
  bool EndObject(rapidjson::SizeType) {
    open_.pop_back();
    return open_.size() != 2 || open_[0] != Field::kFunctions || EndFunction();
  }
  bool StartArray() { return Open(); }
  bool EndArray(rapidjson::SizeType) {
    open_.pop_back();
    return true;
  }
  bool Uint(unsigned number) { return TakeNumber(number); }
  bool Uint64(uint64_t number) { return TakeNumber(number); }
  bool Bool(bool value) {
    if (InFunction()) {
      TakeFlag(value);
    }
    return true;
  }
  bool String(const char* text, rapidjson::SizeType length, bool) {
    return TakeText({text, length});
  }
  bool Default() { return !open_.empty(); }  // the whole is an object

  // Why the parsing ended before its time, or what the whole lacks; empty: nothing.
  std::string Fault() const {
    if (!fault_.empty()) {
      return fault_;
    }
    return isVelkor_ && schemaSeen_ && functionsSeen_ ? "" : kOtherProgram;
  }
  bool IndicesFit() const;
  ComparedAnalysis Take() { return std::move(analysis_); }

 private:
  static constexpr const char* kOtherProgram = "holds no analysis of velkor";

  struct Function {
    ComparedFunction record;
    std::string name, specName, statement, file;
    bool hasKnown = false, hasState = false, usesLibrary = false, overLimit = false;
    uint64_t frameSize = 0, librarySize = 0;
    uint64_t margin = kNoMargin;
  };

  bool Open() {
    functionsSeen_ = functionsSeen_ || (open_.size() == 1 && open_[0] == Field::kFunctions);
    open_.push_back(Field::kNone);
    return true;
  }
  bool InFunction() const { return open_.size() == 3 && open_[0] == Field::kFunctions; }
  bool InGroup() const { return open_.size() >= 3 && open_[0] == Field::kGroups; }
  // Within a function, and with at least one level more.
  bool InReasons() const {
    return open_.size() > 3 && open_[0] == Field::kFunctions && open_[2] == Field::kReasons;
  }
  bool Fail(std::string fault) {
    fault_ = std::move(fault);
    return false;
  }

  bool TakeNumber(uint64_t number) {
    if (open_.size() == 1) {
      return TakeWholeNumber(number);
    }
    if (InGroup()) {
      TakeGroupNumber(number);
    } else if (InFunction()) {
      TakeFunctionNumber(number);
    } else if (open_.size() == 4 && open_[0] == Field::kFunctions && open_[2] == Field::kCallees) {
      analysis_.calls.push_back(Index(number));
    } else if (InReasons() && open_.size() == 5 && open_[4] == Field::kReasonFunction) {
      analysis_.reasons.back().function = Index(number);
    }
    return true;
  }

  bool TakeWholeNumber(uint64_t number) {
    if (open_[0] == Field::kSchema) {
      schemaSeen_ = true;
      return number == kJsonSchema ||
             Fail("holds JSON of schema " + std::to_string(number) + ", and schema " +
                  std::to_string(kJsonSchema) + " is read");
    }
    limit_ = open_[0] == Field::kLimit ? number : limit_;
    return true;
  }

  void TakeGroupNumber(uint64_t number) {
    if (open_.size() == 4 && open_[2] == Field::kMembers) {
      analysis_.groups.back().push_back(Index(number));
    } else if (open_.size() == 3 && open_[2] == Field::kActivations) {
      analysis_.activations.back() = number;
    }
  }

  void TakeFunctionNumber(uint64_t number) {
    switch (open_[2]) {
      case Field::kLine:
        function_.record.line = Index(number);
        break;
      case Field::kKnown:
        function_.record.known = std::min(number, kMaxBound);
        function_.hasKnown = true;
        break;
      case Field::kFrameSize:
        function_.frameSize = number;
        break;
      case Field::kLibrarySize:
        function_.librarySize = number;
        break;
      case Field::kMargin:
        function_.margin = number;
        break;
      case Field::kDepth:
        function_.record.depth = Index(number);
        break;
      case Field::kGroup:
        function_.record.group = Index(number);
        break;
      default:
        break;
    }
  }

  // One that is too large stays no index.
  static uint32_t Index(uint64_t number) {
    return static_cast<uint32_t>(std::min<uint64_t>(number, 0xFFFFFFFE));
  }

  void TakeFlag(bool value) {
    if (open_[2] == Field::kTopLevel) {
      function_.record.isTopLevel = value;
    } else if (open_[2] == Field::kLibrary || open_[2] == Field::kFixedExtra) {
      function_.usesLibrary = function_.usesLibrary || value;
    }
  }

  bool TakeText(std::string_view text) {
    if (open_.empty()) {
      return Fail(kOtherProgram);
    }
    if (open_.size() == 1) {
      isVelkor_ = isVelkor_ || (open_[0] == Field::kGenerator && text.starts_with("velkor "));
      if (open_[0] == Field::kProject) {
        analysis_.label = text;
      }
    } else if (InFunction()) {
      TakeFunctionText(text);
    } else if (InReasons() && open_.size() == 5 && open_[4] == Field::kReasonKind) {
      return TakeReasonKind(text);
    }
    return true;
  }

  bool TakeReasonKind(std::string_view text) {
    const auto kind = std::ranges::find(kReasonKinds, text, ReasonName);
    if (kind == kReasonKinds.end()) {
      return Fail("is damaged: it names a reason that there is not");
    }
    analysis_.reasons.back().kind = *kind;
    return true;
  }

  void TakeFunctionText(std::string_view text) {
    switch (open_[2]) {
      case Field::kName:
        function_.name = text;
        break;
      case Field::kSpecName:
        function_.specName = text;
        break;
      case Field::kStatement:
        function_.statement = text;
        break;
      case Field::kFile:
        function_.record.file = FileNumber(text);
        break;
      case Field::kFrameText:
        function_.overLimit = text == "SIZEOVER";
        break;
      case Field::kBoundState:
        TakeState(text);
        break;
      default:
        break;
    }
  }

  void TakeState(std::string_view text) {
    for (const BoundState state :
         {BoundState::kBounded, BoundState::kUnbounded, BoundState::kOver}) {
      if (BoundStateName(state) == text) {
        function_.record.state = state;
        function_.hasState = true;
      }
    }
  }

  uint32_t FileNumber(std::string_view file) {
    const auto [place, isNew] =
        fileNumbers_.try_emplace(std::string(file), static_cast<uint32_t>(fileNumbers_.size()));
    if (isNew) {
      analysis_.files.emplace_back(file);
    }
    return place->second;
  }

  void StartFunction() {
    function_ = {};
    function_.record.firstCall = static_cast<uint32_t>(analysis_.calls.size());
    function_.record.firstReason = static_cast<uint32_t>(analysis_.reasons.size());
  }

  bool EndFunction() {
    if (!function_.hasKnown || !function_.hasState || function_.specName.empty()) {
      return Fail("is damaged: function " + std::to_string(analysis_.functions.size()) +
                  " is not whole");
    }
    const uint64_t frame =
        function_.overLimit ? limit_ + 1 : std::min(function_.frameSize, limit_ + 1);
    const uint64_t more = function_.margin != kNoMargin ? function_.margin
                          : function_.usesLibrary       ? function_.librarySize
                                                        : 0;
    function_.record.own = AddBounded(std::min(frame, kMaxBound), std::min(more, kMaxBound));
    analysis_.functions.push_back(function_.record);
    analysis_.keys.Add(WithoutCloneNumbers(function_.statement.empty() ? function_.specName
                                                                       : function_.statement));
    analysis_.symbols.Add(function_.name);
    analysis_.names.Add(function_.specName);
    return true;
  }

  std::vector<Field> open_;  // of each open object or array the key that was met last
  std::string fault_;
  bool schemaSeen_ = false;
  bool isVelkor_ = false;
  bool functionsSeen_ = false;
  uint64_t limit_ = kSizeLimit;
  Function function_;
  std::unordered_map<std::string, uint32_t> fileNumbers_;
  ComparedAnalysis analysis_;
};

bool AnalysisHandler::IndicesFit() const {
  const size_t count = analysis_.functions.size();
  const auto fits = [count](uint32_t function) { return function < count; };
  return std::ranges::all_of(analysis_.calls, fits) &&
         std::ranges::all_of(analysis_.reasons, fits, &ReasonWitness::function) &&
         std::ranges::all_of(
             analysis_.groups,
             [&](const auto& members) { return std::ranges::all_of(members, fits); }) &&
         std::ranges::all_of(analysis_.functions, [this](const ComparedFunction& function) {
           return function.group == StkBounds::kNoGroup || function.group < analysis_.groups.size();
         });
}

}  // namespace

std::optional<ComparedAnalysis> ReadAnalysis(std::FILE* file, std::string& error) {
  std::array<char, 65536> buffer{};
  rapidjson::FileReadStream stream(file, buffer.data(), buffer.size());
  rapidjson::Reader reader;
  AnalysisHandler handler;
  constexpr unsigned kFlags =
      rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
  const rapidjson::ParseResult parsed = reader.Parse<kFlags>(stream, handler);
  if (parsed.IsError() && parsed.Code() != rapidjson::kParseErrorTermination) {
    error = "is cut short or no JSON: see byte " + std::to_string(parsed.Offset());
    return std::nullopt;
  }
  error = handler.Fault();
  if (error.empty() && !handler.IndicesFit()) {
    error = "is damaged: it names functions that it does not hold";
  }
  return error.empty() ? std::optional(handler.Take()) : std::nullopt;
}

}  // namespace velkor::reports
