#include "ui/views/function_list_model.h"

#include "core/call_range.h"
#include "core/function_text.h"
#include "ui/shown_text.h"
#include "ui/views/function_icons.h"
#include "ui/views/largest_total.h"

namespace velkor::ui {

namespace {

constexpr int kKindCount = 5;

}  // namespace

FunctionListModel::FunctionListModel(const CodePage& codePage,
                                     std::array<QString, kColumnCount> headers,
                                     KindDescriptions kinds)
    : codePage_(codePage),
      headers_(std::move(headers)),
      kinds_(std::move(kinds)),
      icons_(kCalleeRow + kKindCount) {
  for (int kind = 0; kind < kKindCount; ++kind) {
    icons_[static_cast<size_t>(kind)] = ListIcon(kind);
    icons_[static_cast<size_t>(kCalleeRow) + static_cast<size_t>(kind)] =
        ListIcon(kCalleeRow + kind);
  }
}

void FunctionListModel::Clear() {
  beginResetModel();
  rows_.clear();
  sortValues_.clear();
  endResetModel();
}

void FunctionListModel::Fill(const NodeRecord& record, uint32_t sizeLimit,
                             std::optional<SortKey> key, bool descending) {
  beginResetModel();
  rows_.clear();
  sortValues_.clear();
  StkFunction& function = *record.function;
  Append(function, IconIndex(function, record.onMaximumChain), sizeLimit);
  if (!record.repeated) {
    rows_.reserve(1 + function.callees.size() + function.extraCallees.size());
    sortValues_.reserve(rows_.capacity());
    const uint32_t largest = LargestCalleeTotal(function);
    for (StkFunction* callee : AllCallees(function)) {
      Append(*callee, kCalleeRow + IconIndex(*callee, callee->totalStackSize == largest),
             sizeLimit);
    }
  }
  if (key) {
    Arrange(SortedPositions(sortValues_, *key, descending, codePage_));
  }
  endResetModel();
}

void FunctionListModel::Sort(SortKey key, bool descending) {
  emit layoutAboutToBeChanged({}, VerticalSortHint);
  const std::vector<uint32_t> positions = SortedPositions(sortValues_, key, descending, codePage_);
  Arrange(positions);
  std::vector<int> newRows(positions.size());
  for (size_t i = 0; i < positions.size(); ++i) {
    newRows[positions[i]] = static_cast<int>(i);
  }
  const QModelIndexList before = persistentIndexList();
  QModelIndexList after;
  after.reserve(before.size());
  for (const QModelIndex& index : before) {
    after.push_back(createIndex(newRows[static_cast<size_t>(index.row())], index.column()));
  }
  changePersistentIndexList(before, after);
  emit layoutChanged({}, VerticalSortHint);
}

int FunctionListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FunctionListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant FunctionListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const auto row = static_cast<size_t>(index.row());
  const int icon = sortValues_[row].icon;
  switch (role) {
    case Qt::DisplayRole:
      return ForScreen(index.column() == kFunction ? CutToRow(rows_[row].name, codePage_)
                                                   : std::string(Text(row, index.column())),
                       codePage_);
    case Qt::ToolTipRole:
      return index.column() == kFunction ? QVariant(ForScreen(rows_[row].name, codePage_))
                                         : data(index, Qt::DisplayRole);
    case Qt::DecorationRole:
      return index.column() == kFunction ? icons_[static_cast<size_t>(icon)] : QVariant();
    case Qt::AccessibleDescriptionRole:
      return index.column() == kFunction ? kinds_[static_cast<size_t>(icon % kCalleeRow)]
                                         : headers_[static_cast<size_t>(index.column())];
    case Qt::TextAlignmentRole:
      return headerData(index.column(), Qt::Horizontal, role);
    default:
      return {};
  }
}

QVariant FunctionListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= kColumnCount) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return headers_[static_cast<size_t>(section)];
  }
  if (role == Qt::TextAlignmentRole) {
    const bool isText = section == kFunction || section == kFile;
    return QVariant(Qt::AlignVCenter | (isText ? Qt::AlignLeft : Qt::AlignRight));
  }
  return {};
}

void FunctionListModel::Append(StkFunction& function, int icon, uint32_t sizeLimit) {
  rows_.push_back({&function, FunctionDisplayName(function, codePage_), TotalSizeText(function),
                   FrameSizeText(function), AdjustmentInfoText(function, AdjustmentStyle::kList)});
  sortValues_.push_back(SortValuesOf(function, icon, sizeLimit));
}

void FunctionListModel::Arrange(const std::vector<uint32_t>& positions) {
  std::vector<Row> rows;
  std::vector<SortValues> sortValues;
  rows.reserve(rows_.size());
  sortValues.reserve(rows_.size());
  for (const uint32_t position : positions) {
    rows.push_back(std::move(rows_[position]));
    sortValues.push_back(sortValues_[position]);
  }
  rows_ = std::move(rows);
  sortValues_ = std::move(sortValues);
}

std::string_view FunctionListModel::Text(size_t row, int column) const {
  switch (column) {
    case kFunction:
      return rows_[row].name;
    case kTotal:
      return rows_[row].total;
    case kFrame:
      return rows_[row].frame;
    case kMargin:
      return rows_[row].margin;
    default:
      return sortValues_[row].file ? std::string_view(sortValues_[row].file->name)
                                   : std::string_view();
  }
}

}  // namespace velkor::ui
