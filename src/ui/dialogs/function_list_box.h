#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <QTimer>
#include <memory>

#include "core/function_list.h"
#include "platform/code_page.h"
#include "ui/dialogs/name_sorter.h"

namespace velkor::ui {

// Rows of functions, one column. A row's text is made whenever it is shown and never kept, so that
// a million rows cost their references only. Refers to functions, which must outlive it.
class FunctionListBoxModel : public QAbstractListModel {
 public:
  explicit FunctionListBoxModel(const CodePage& codePage, QObject* parent = nullptr);

  // From row firstAdded on, a row shows that its function was added.
  void SetRows(StkFunctionList functions, size_t firstAdded);
  // Added rows come and go.
  void InsertAdded(size_t row, StkFunction& function);
  void RemoveAdded(size_t row);
  void RemoveAllAdded();

  StkFunction* FunctionAt(int row) const { return functions_[static_cast<size_t>(row)]; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  // A search for the start of a text looks at names only, without making every row's text, and
  // finds the name of a function alone as well as with its file or in its brackets.
  QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                        Qt::MatchFlags flags) const override;

 private:
  bool NameStartsWith(const StkFunction& function, std::string_view search) const;

  const CodePage& codePage_;
  StkFunctionList functions_;
  size_t firstAdded_ = 0;
};

// A list of one column over such rows. It starts as wide as the view and widens to the widest row
// that was shown so far, so that long names can be scrolled to. One row at most is selected.
class FunctionListBox : public QListView {
  Q_OBJECT

 public:
  explicit FunctionListBox(const CodePage& codePage, QWidget* parent = nullptr);

  FunctionListBoxModel& Rows() { return *rows_; }
  // None when no row is selected.
  StkFunction* SelectedFunction() const;
  // Another set of rows: scrolled to the first, nothing selected.
  void SetFunctions(StkFunctionList functions, size_t firstAdded);
  // In name order, none of them added. Of very many the rows come a moment later, when they have
  // been sorted.
  void SetFunctionsByName(StkFunctionList functions);

  // Whether the selected row is seen also without the focus.
  void ShowSelectionAlways(bool always);

  QSize sizeHint() const override;

 signals:
  void GotFocus();
  void SelectionChanged();

 protected:
  void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;

 private:
  class Delegate;

  void WidenToShownRows();
  void SortSome();
  void ShowSorted();

  const CodePage& codePage_;
  FunctionListBoxModel* rows_;
  Delegate* delegate_;
  std::unique_ptr<NameSorter> sorter_;  // of the rows that are to come
  QTimer sortLater_;
};

}  // namespace velkor::ui
