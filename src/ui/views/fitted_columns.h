#pragma once

#include <QAbstractItemView>
#include <QHeaderView>
#include <vector>

namespace velkor::ui {

// The widths of a table's columns: that of the names takes what the others leave over, the yielding
// ones give up theirs before names are cut, and all grow with the text. Once the user has made
// something else of the columns that stays, but for the growing. Owned by the header;
// user-interface thread.
class FittedColumns : public QObject {
 public:
  // A column that is fitted. Widths are in pixels, at the size that the text has at the start.
  struct Column {
    int index;
    int usual;               // where there is room
    bool byContent = false;  // wider where the texts that are seen need it
  };

  // yielding: in the order in which they yield.
  FittedColumns(QAbstractItemView& view, QHeaderView& header, Column names,
                std::vector<Column> yielding);

  // What the columns show has changed.
  void Fit();

  // What the user has made of the columns; empty: nothing.
  QByteArray Own() const;
  void SetOwn(const QByteArray& columns);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Zoom();
  void ShowHeaders();
  // As wide as it is wanted.
  int Wanted(const Column& column) const;
  int Usual(const Column& column) const;
  // Of those that are not fitted.
  int OfOthers() const;
  void SetWidth(const Column& column, int width);

  QAbstractItemView& view_;
  QHeaderView& header_;
  const Column names_;
  const std::vector<Column> yielding_;
  const double firstTextWidth_;  // of a text that is always the same
  double textWidth_;
  bool isOwn_ = false;
  bool fitting_ = false;
};

}  // namespace velkor::ui
