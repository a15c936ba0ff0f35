#pragma once

#include <QWidget>
#include <utility>
#include <vector>

#include "reports/icicle.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// What the boxes of the picture stand for, side by side in as many rows as it takes.
class PictureLegend : public QWidget {
 public:
  explicit PictureLegend(const UiContext& context, QWidget* parent = nullptr);

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Item {
    bool isLine = false;  // where a stack ends
    reports::IcicleKind kind{};
    QString text;
  };

  // Each item at its place; the height of all.
  template <typename Visit>
  int Arrange(int width, Visit visit) const;

  std::vector<Item> items_;
};

}  // namespace velkor::ui
