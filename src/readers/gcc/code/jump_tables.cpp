#include "readers/gcc/code/jump_tables.h"

namespace velkor {
namespace {

constexpr uint64_t kMostEntries = 65536;

CodeValue Table(const CodeValue& index, uint64_t address, uint8_t width, bool isSigned) {
  CodeValue table;
  if (!index.IsPlain()) {
    return table;
  }
  table.kind = CodeValue::Kind::kTable;
  table.id = address;
  table.width = width;
  table.isSigned = isSigned;
  table.bound = index.bound;
  table.shift = 1;
  table.amount = static_cast<int64_t>(address);
  return table;
}

}  // namespace

std::optional<std::vector<uint64_t>> TargetsOf(const CodeValue& table, const CodeImage& image) {
  if (!table.IsTable() || table.bound >= kMostEntries) {
    return std::nullopt;
  }
  const size_t count = static_cast<size_t>(table.bound) + 1;
  const std::string_view bytes = image.ConstantsAt(table.id);
  if (bytes.size() < count * table.width) {
    return std::nullopt;
  }
  ByteReader reader(bytes, image.Order());
  std::vector<uint64_t> targets;
  targets.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const uint64_t entry = table.isSigned ? static_cast<uint64_t>(reader.Signed(table.width))
                                          : reader.Unsigned(table.width);
    const uint64_t target = static_cast<uint64_t>(table.amount) + (entry << table.shift);
    targets.push_back(image.Wrapped(target));
  }
  return targets;
}

CodeValue TableBehind(const CodeValue& index, uint64_t address, uint8_t width) {
  return Table(index, address, width, false);
}

CodeValue TableOfHelper(const CodeValue& index, uint64_t next,
                        CodeSurroundings::TableHelper helper) {
  using Helper = CodeSurroundings::TableHelper;
  switch (helper) {
    case Helper::kBytes:
      return Table(index, next, 1, false);
    case Helper::kSignedBytes:
      return Table(index, next, 1, true);
    case Helper::kHalves:
      return Table(index, next, 2, false);
    case Helper::kSignedHalves:
      return Table(index, next, 2, true);
    case Helper::kWords: {
      CodeValue table = Table(index, (next + 2) & ~uint64_t{3}, 4, true);
      table.shift = 0;
      return table;
    }
    default:
      return {};
  }
}

}  // namespace velkor
