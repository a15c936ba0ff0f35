#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <QItemSelection>
#include <array>
#include <functional>
#include <vector>

#include "ui/views/accessible_texts.h"
#include "ui/views/function_cells.h"

namespace velkor::ui {

// Functions of a whole analysis as one table: rows in the order that it is given, cells as the
// functions are now. Refers to the document's functions; the owner clears it before they go.
// User-interface thread.
class AllFunctionsModel : public QAbstractTableModel {
 public:
  AllFunctionsModel(UiContext& context, QObject* parent);

  // Indices of the function table.
  void SetRows(std::vector<uint32_t> rows);
  // The same rows, of which every cell may read otherwise.
  void Refresh();
  // None while a job has the functions.
  StkFunction* FunctionAt(int row) const;
  // -1: no row shows it.
  int RowOf(const StkFunction& function) const;
  // Those of the rows, in the order of the table.
  std::vector<uint32_t> Functions(const QItemSelection& rows) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  // While a job has the functions a cell shows what it showed before.
  struct Shown {
    QString text;
    int icon = 0;
  };
  Shown ShownOf(const QModelIndex& index) const;

  UiContext& context_;
  const CellTexts headers_;
  const KindDescriptions kinds_;
  std::array<QIcon, 5> icons_;
  const StkBounds* bounds_ = nullptr;
  std::vector<uint32_t> rows_;
  mutable QHash<quint64, Shown> shown_;  // by function and column
};

}  // namespace velkor::ui
