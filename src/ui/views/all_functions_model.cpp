#include "ui/views/all_functions_model.h"

#include <algorithm>
#include <utility>

#include "ui/views/function_icons.h"

namespace velkor::ui {

namespace {

// More cells than a screen shows.
constexpr qsizetype kMostCells = 16384;

}  // namespace

AllFunctionsModel::AllFunctionsModel(UiContext& context, QObject* parent)
    : QAbstractTableModel(parent),
      context_(context),
      headers_(CellHeaders(context)),
      kinds_(KindsFrom(context)) {
  for (size_t kind = 0; kind < icons_.size(); ++kind) {
    icons_[kind] = TreeIcon(static_cast<int>(kind));
  }
}

void AllFunctionsModel::SetRows(std::vector<uint32_t> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  shown_.clear();
  bounds_ = rows_.empty() ? nullptr : context_.document.Bounds();
  endResetModel();
}

void AllFunctionsModel::Refresh() {
  shown_.clear();
  bounds_ = context_.document.Bounds();
  if (!rows_.empty()) {
    emit dataChanged(this->index(0, 0), this->index(rowCount() - 1, columnCount() - 1));
  }
}

StkFunction* AllFunctionsModel::FunctionAt(int row) const {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  const bool exists = row >= 0 && row < rowCount() && functions;
  return exists ? functions->Functions()[rows_[static_cast<size_t>(row)]] : nullptr;
}

int AllFunctionsModel::RowOf(const StkFunction& function) const {
  const auto found = std::ranges::find(rows_, function.index);
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

std::vector<uint32_t> AllFunctionsModel::Functions(const QItemSelection& rows) const {
  std::vector<std::pair<int, int>> ranges;
  ranges.reserve(static_cast<size_t>(rows.size()));
  for (const QItemSelectionRange& range : rows) {
    ranges.emplace_back(range.top(), range.bottom());
  }
  std::ranges::sort(ranges);
  std::vector<uint32_t> functions;
  for (const auto& [top, bottom] : ranges) {
    functions.insert(functions.end(), rows_.begin() + top, rows_.begin() + bottom + 1);
  }
  return functions;
}

int AllFunctionsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int AllFunctionsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kFunctionCellCount);
}

QVariant AllFunctionsModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const bool isName = index.column() == static_cast<int>(FunctionCell::kFunction);
  switch (role) {
    case Qt::DisplayRole:
      return ShownOf(index).text;
    case Qt::ToolTipRole:
      if (const StkFunction* function = FunctionAt(index.row()); function && isName) {
        return WholeName(*function, context_.host.codePage);
      }
      return ShownOf(index).text;
    case Qt::DecorationRole:
      return isName ? icons_[static_cast<size_t>(ShownOf(index).icon)] : QVariant();
    case Qt::AccessibleDescriptionRole:
      return isName ? kinds_[static_cast<size_t>(ShownOf(index).icon)]
                    : headers_[static_cast<size_t>(index.column())];
    case Qt::TextAlignmentRole:
      return headerData(index.column(), Qt::Horizontal, role);
    default:
      return {};
  }
}

QVariant AllFunctionsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return headers_[static_cast<size_t>(section)];
  }
  if (role == Qt::TextAlignmentRole) {
    const bool isNumber = IsNumberCell(static_cast<FunctionCell>(section));
    return QVariant(Qt::AlignVCenter | (isNumber ? Qt::AlignRight : Qt::AlignLeft));
  }
  return {};
}

AllFunctionsModel::Shown AllFunctionsModel::ShownOf(const QModelIndex& index) const {
  const quint64 key = quint64{rows_[static_cast<size_t>(index.row())]} * kFunctionCellCount +
                      static_cast<quint64>(index.column());
  if (const auto known = shown_.constFind(key); known != shown_.constEnd()) {
    return *known;
  }
  const StkFunction* function = FunctionAt(index.row());
  if (!function) {
    return {};
  }
  if (shown_.size() >= kMostCells) {
    shown_.clear();
  }
  return *shown_.insert(key, {CellText(*function, static_cast<FunctionCell>(index.column()),
                                       bounds_, context_.host.codePage),
                              IconIndex(*function, false)});
}

}  // namespace velkor::ui
