#include "ui/summary/summary_model.h"

#include <QFont>
#include <utility>

#include "ui/summary/summary_marks.h"

namespace velkor::ui {

namespace {

constexpr quintptr kOfTitle = 0;  // else one more than the group

}  // namespace

SummaryModel::SummaryModel(std::array<QString, kColumnCount> headers)
    : headers_(std::move(headers)) {
  for (size_t mark = 0; mark < marks_.size(); ++mark) {
    marks_[mark] = SummaryMarkIcon(static_cast<SummaryMark>(mark));
  }
}

void SummaryModel::SetGroups(std::vector<SummaryGroup> groups) {
  beginResetModel();
  groups_ = std::move(groups);
  endResetModel();
}

const SummaryRow* SummaryModel::RowOf(const QModelIndex& index) const {
  return index.isValid() && index.internalId() != kOfTitle
             ? &groups_[index.internalId() - 1].rows[static_cast<size_t>(index.row())]
             : nullptr;
}

bool SummaryModel::IsSpanned(const QModelIndex& index) const {
  const SummaryRow* row = RowOf(index);
  return row == nullptr || row->cells.size() == 1;
}

QModelIndex SummaryModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column < 0 || column >= kColumnCount || row >= rowCount(parent)) {
    return {};
  }
  return createIndex(row, column,
                     parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : kOfTitle);
}

QModelIndex SummaryModel::parent(const QModelIndex& index) const {
  return index.isValid() && index.internalId() != kOfTitle
             ? createIndex(static_cast<int>(index.internalId() - 1), 0, kOfTitle)
             : QModelIndex();
}

int SummaryModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) {
    return static_cast<int>(groups_.size());
  }
  return parent.internalId() == kOfTitle && parent.column() == 0
             ? static_cast<int>(groups_[static_cast<size_t>(parent.row())].rows.size())
             : 0;
}

int SummaryModel::columnCount(const QModelIndex&) const {
  return kColumnCount;
}

QVariant SummaryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  const SummaryRow* row = RowOf(index);
  return row ? RowData(*row, index.column(), role)
             : TitleData(groups_[static_cast<size_t>(index.row())], index.column(), role);
}

QVariant SummaryModel::TitleData(const SummaryGroup& group, int column, int role) const {
  if (role == Qt::DisplayRole && column == 0) {
    return group.title;
  }
  if (role == Qt::FontRole) {
    QFont font;
    font.setBold(true);
    return font;
  }
  return {};
}

QVariant SummaryModel::RowData(const SummaryRow& row, int column, int role) const {
  const QString text = column < row.cells.size() ? row.cells[column] : QString();
  switch (role) {
    case Qt::DisplayRole:
      return text;
    case Qt::ToolTipRole:
      return row.tip.isEmpty() ? text : row.tip;
    case Qt::DecorationRole:
      return column == 0 ? marks_[static_cast<size_t>(row.mark)] : QVariant();
    case kBudgetRole:
      return column == 1 && row.budget ? QVariant::fromValue(*row.budget) : QVariant();
    case Qt::AccessibleDescriptionRole:
      return column == 0 ? row.cells.mid(1).join(", ") : headers_[static_cast<size_t>(column)];
    default:
      return {};
  }
}

QVariant SummaryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool isText = orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
                      section < kColumnCount;
  return isText ? QVariant(headers_[static_cast<size_t>(section)]) : QVariant();
}

}  // namespace velkor::ui
