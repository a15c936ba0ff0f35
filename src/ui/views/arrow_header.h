#pragma once

#include <QHeaderView>

namespace velkor::ui {

// A table's header that draws the arrow of the sorted column at the right of its text.
class ArrowHeader : public QHeaderView {
 public:
  explicit ArrowHeader(QWidget* parent);

  // section -1: no arrow.
  void SetArrow(int section, bool descending);

 protected:
  // With room for an arrow.
  QSize sectionSizeFromContents(int section) const override;
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;

 private:
  int arrowSection_ = -1;
  bool descending_ = false;
};

}  // namespace velkor::ui
