#pragma once

#include <QTreeView>
#include <functional>
#include <optional>

#include "ui/summary/summary_model.h"

namespace velkor::ui {

// One half of the summary: groups of rows, all of them open at first. A row of a function is a
// link, taken with a click on its first column or with Enter.
class SummaryTable : public QTreeView {
 public:
  using Follow = std::function<void(const SummaryRow&)>;

  // headers: of the three columns.
  SummaryTable(std::array<QString, SummaryModel::kColumnCount> headers, Follow follow,
               QWidget* parent = nullptr);

  void SetGroups(std::vector<SummaryGroup> groups);
  // Of the current row, if it is about one.
  std::optional<uint32_t> CurrentFunction() const;

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  static constexpr int kWidestBar = 90;

  const SummaryRow* LinkAt(const QModelIndex& index) const;
  void SelectInGroup(int group, int row);
  // Of the texts of the second column.
  int SecondWidth() const;
  void FitColumns();

  SummaryModel* model_;  // owned by the Qt parent
  Follow follow_;
  int secondWidth_ = 0;
  int barWidth_ = kWidestBar;
  bool fitting_ = false;
  bool widthsFollow_ = true;  // those of the columns, until the user gives them others
};

}  // namespace velkor::ui
