#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/views/accessible_texts.h"
#include "ui/views/function_order.h"
#include "ui/views/node_record.h"

namespace velkor::ui {

// The rows of the function list: the function of a tree node, and below it those that it calls.
// A row's texts and its icon are those at the time of Fill. Refers to functions; the owner clears
// it before they go. User-interface thread.
class FunctionListModel : public QAbstractTableModel {
 public:
  enum Column { kFunction, kTotal, kFrame, kMargin, kFile, kBound, kMark, kColumnCount };

  // What the columns kBound and kMark say of a function.
  struct Need {
    QString bound;
    QString mark;
    uint64_t known = 0;
    uint32_t missing = 0;  // by this they are sorted
  };
  using NeedOf = std::function<Need(const StkFunction&)>;

  FunctionListModel(const CodePage& codePage, std::array<QString, kColumnCount> headers,
                    KindDescriptions kinds, NeedOf needOf = {});

  void Clear();
  // The function's row first; below it, unless the node is a repeated one, its callees, then its
  // extra callees, in the order of a sort key if there is one. sizeLimit: that of their table.
  void Fill(const NodeRecord& record, uint32_t sizeLimit, std::optional<SortKey> key,
            bool descending);
  // Rows that are selected stay selected.
  void Sort(SortKey key, bool descending);

  StkFunction* FunctionAt(int row) const { return rows_[static_cast<size_t>(row)].function; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Row {
    StkFunction* function = nullptr;
    std::string name;
    std::string total;
    std::string frame;
    std::string margin;
    QString bound;
    QString mark;
  };

  void Append(StkFunction& function, int icon, uint32_t sizeLimit);
  void Arrange(const std::vector<uint32_t>& positions);
  QString Text(size_t row, int column) const;
  std::string_view Bytes(size_t row, int column) const;

  const CodePage& codePage_;
  std::array<QString, kColumnCount> headers_;
  KindDescriptions kinds_;
  NeedOf needOf_;
  std::vector<QIcon> icons_;  // by icon index
  std::vector<Row> rows_;
  std::vector<SortValues> sortValues_;  // of the rows
};

}  // namespace velkor::ui
