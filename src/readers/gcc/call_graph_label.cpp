#include "readers/gcc/call_graph_label.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <utility>

#include "readers/gcc/text_ends.h"

namespace velkor {
namespace {

// What parts the label: a backslash and an n, which a path of Windows may hold as well.
constexpr std::string_view kPartEnd = "\\n";

// The digits at the end of a text, which are taken from it. A number of more digits than always fit
// is the largest.
template <typename Number>
std::optional<Number> TakeNumber(std::string_view& text) {
  using Limits = std::numeric_limits<Number>;
  constexpr size_t kDigitsThatFit = Limits::digits10;
  size_t start = text.size();
  while (start > 0 && text[start - 1] >= '0' && text[start - 1] <= '9') {
    --start;
  }
  if (start == text.size()) {
    return std::nullopt;
  }
  std::string_view digits = text.substr(start);
  text.remove_suffix(digits.size());
  for (; digits.size() > kDigitsThatFit; digits.remove_prefix(1)) {
    if (digits.front() != '0') {
      return Limits::max();
    }
  }
  Number number = 0;
  for (const char digit : digits) {
    number = static_cast<Number>(number * 10 + static_cast<Number>(digit - '0'));
  }
  return number;
}

// " VARIABLE FILE:LINE:COLUMN" each, every one behind a part end.
uint32_t TakeObjectList(std::string_view& text, std::vector<DynamicObject>& objects) {
  constexpr std::string_view kStart = "\\n ";
  const size_t before = objects.size();
  while (TakePrefix(text, kStart)) {
    const std::string_view one = text.substr(0, text.find(kStart));
    text.remove_prefix(one.size());
    const size_t space = std::min(one.find(' '), one.size());
    const std::string_view place = one.substr(std::min(space + 1, one.size()));
    objects.push_back({one.substr(0, space), ReadSourcePlace(place)});
  }
  return static_cast<uint32_t>(objects.size() - before);
}

// "\nM dynamic objects" and the objects, which end the label. False when the count is another.
bool TakeDynamicObjects(std::string_view& label, CallGraphNode& node,
                        std::vector<DynamicObject>& objects) {
  constexpr std::string_view kHeading = " dynamic objects";
  const size_t heading = label.rfind(kHeading);
  if (heading == std::string_view::npos) {
    return true;
  }
  std::string_view list = label.substr(heading + kHeading.size());
  std::string_view before = label.substr(0, heading);
  const std::optional<uint32_t> count = TakeNumber<uint32_t>(before);
  if (!count || !TakeSuffix(before, kPartEnd)) {
    return true;  // it belongs to another part
  }
  label = before;
  node.firstDynamicObject = static_cast<uint32_t>(objects.size());
  node.dynamicObjectCount = TakeObjectList(list, objects);
  return node.dynamicObjectCount == *count && list.empty();
}

// "\nN bytes (KIND)" at the end. False when something of that kind is there and not known.
bool TakeFrame(std::string_view& label, CallGraphNode& node) {
  using Frame = CallGraphNode::Frame;
  static constexpr std::pair<std::string_view, Frame> kEnds[] = {
      {" bytes (static)", Frame::kStatic},
      {" bytes (dynamic)", Frame::kDynamic},
      {" bytes (dynamic,bounded)", Frame::kBounded},
  };
  for (const auto& [end, frame] : kEnds) {
    std::string_view rest = label;
    if (TakeSuffix(rest, end)) {
      const std::optional<int64_t> bytes = TakeNumber<int64_t>(rest);
      if (!bytes || !TakeSuffix(rest, kPartEnd)) {
        return false;
      }
      node.bytes = static_cast<uint64_t>(*bytes);
      node.frame = frame;
      label = rest;
      return true;
    }
  }
  return !label.ends_with(')');
}

}  // namespace

SourcePlace ReadSourcePlace(std::string_view text) {
  std::string_view rest = text;
  const std::optional<uint32_t> column = TakeNumber<uint32_t>(rest);
  if (!column || !TakeSuffix(rest, ":")) {
    return {text};
  }
  const std::optional<uint32_t> line = TakeNumber<uint32_t>(rest);
  if (!line || !TakeSuffix(rest, ":")) {
    return {text};
  }
  return {rest, *line, *column};
}

bool ReadNodeLabel(std::string_view label, CallGraphNode& node,
                   std::vector<DynamicObject>& objects) {
  bool isKnown = true;
  const size_t nameEnd = std::min(label.find(kPartEnd), label.size());
  node.name = label.substr(0, nameEnd);
  std::string_view rest = label.substr(nameEnd);
  if (node.shape == CallGraphNode::Shape::kFunction) {
    const bool listed = TakeDynamicObjects(rest, node, objects);
    isKnown = TakeFrame(rest, node) && listed;
  }
  node.place = ReadSourcePlace(rest.substr(std::min(kPartEnd.size(), rest.size())));
  return isKnown;
}

}  // namespace velkor
