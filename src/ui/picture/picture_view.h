#pragma once

#include <QAbstractScrollArea>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "reports/icicle_layout.h"
#include "ui/answer/answer_keeper.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/picture/picture_place.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// The picture of where the stack goes, as the page has it, to be looked at closely: pointed at, a
// box says what it is; Ctrl and the wheel, and the keys +, - and 0, zoom in on the bytes; the arrow
// keys go from box to box; a double click or Enter leads to the box's node of the tree. It draws no
// more than is seen. The commands for one function act on that of the current box.
class PictureView : public QAbstractScrollArea, public CommandTarget {
 public:
  // showPath: opens the tree along these functions. All outlive the view.
  using ShowPath = std::function<void(const std::vector<uint32_t>&)>;
  PictureView(UiContext& context, AnswerKeeper& keeper, FrameOperations& frame, ShowPath showPath,
              QWidget* parent = nullptr);

  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

  // There is something to be seen.
  bool HasPicture() const { return layout_ != nullptr; }
  // As a file has it, at its own size; only with a picture.
  reports::IcicleLayout LayoutToSave() const;
  // What the current box says of itself; empty without one.
  QString CurrentText() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void Take(const AnswerKeeper::Answer& answer);
  void LayOut();
  reports::IcicleMeasures Measures() const;
  // Of the view, to the picture.
  QPointF InPicture(const QPointF& position) const;
  std::optional<PicturePlace> PlaceAt(const QPointF& position) const;
  void SetCurrent(PicturePlace place);
  void SetHovered(std::optional<PicturePlace> place);
  // What stays where it is: a height of the view.
  void ZoomTo(double zoom, double fixed);
  void ZoomIntoCurrent();
  void ScrollToCurrent();
  void Follow();
  StkFunction* CurrentFunction() const;
  void Announce();

  UiContext& context_;
  FrameOperations& frame_;
  ShowPath showPath_;
  const reports::IcicleWords words_;
  AnswerKeeper::Answer answer_;
  std::unique_ptr<reports::IcicleLayout> layout_;  // of the answer; none: nothing to be seen
  double zoom_ = 1;
  PicturePlace current_;
  std::optional<PicturePlace> hovered_;
};

}  // namespace velkor::ui
