#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <array>
#include <optional>
#include <vector>

#include "ui/summary/summary_rows.h"

namespace velkor::ui {

// Groups of rows below their titles. User-interface thread.
class SummaryModel : public QAbstractItemModel {
 public:
  static constexpr int kColumnCount = 3;
  static constexpr int kBudgetRole = Qt::UserRole + 2;  // a StackBudget, of the second column

  explicit SummaryModel(std::array<QString, kColumnCount> headers);

  void SetGroups(std::vector<SummaryGroup> groups);
  // None for a title, and where it is null.
  const SummaryRow* RowOf(const QModelIndex& index) const;
  // The row of a group fills the whole width.
  bool IsSpanned(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QVariant TitleData(const SummaryGroup& group, int column, int role) const;
  QVariant RowData(const SummaryRow& row, int column, int role) const;

  std::array<QString, kColumnCount> headers_;
  std::array<QIcon, 5> marks_;
  std::vector<SummaryGroup> groups_;
};

}  // namespace velkor::ui

Q_DECLARE_METATYPE(velkor::ui::StackBudget)
