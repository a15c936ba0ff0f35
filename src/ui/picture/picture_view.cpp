#include "ui/picture/picture_view.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/commands/context_menu.h"
#include "ui/commands/function_commands.h"
#include "ui/picture/picture_colors.h"
#include "ui/picture/picture_painter.h"
#include "ui/picture/picture_texts.h"
#include "ui/picture/picture_words.h"

namespace velkor::ui {

using reports::IcicleBox;

namespace {

constexpr double kMostPixelsOfAByte = 24;
constexpr double kMostHeight = 2e7;  // what scroll bars can still tell apart
constexpr double kZoomStep = 1.25;
constexpr double kNarrowColumn = 18;  // in average characters
constexpr double kWideColumn = 44;

}  // namespace

PictureView::PictureView(UiContext& context, AnswerKeeper& keeper, FrameOperations& frame,
                         ShowPath showPath, QWidget* parent)
    : QAbstractScrollArea(parent),
      context_(context),
      frame_(frame),
      showPath_(std::move(showPath)),
      words_(PictureWords(context)) {
  setAccessibleName(context.Text(kPictureName));
  setFocusPolicy(Qt::StrongFocus);
  // Its width decides that of the columns, which must not depend on their height.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  viewport()->setMouseTracking(true);
  keeper.AddListener([this](const AnswerKeeper::Answer& answer) { Take(answer); });
}

void PictureView::Take(const AnswerKeeper::Answer& answer) {
  layout_.reset();  // it refers to the answer before
  answer_ = answer;
  hovered_.reset();
  if (!answer_) {
    zoom_ = 1;
    current_ = {};
  }
  LayOut();
  frame_.UpdateCommands();
}

reports::IcicleMeasures PictureView::Measures() const {
  const QFontMetricsF metrics(font());
  const double character = metrics.averageCharWidth();
  reports::IcicleMeasures measures;
  measures.axisWidth = 10 * character;
  measures.headHeight = 2 * metrics.height() + 6;
  measures.missingHeight = 4 * metrics.height();
  const auto columns = static_cast<double>(std::max<size_t>(1, answer_->icicle.columns.size()));
  measures.columnWidth =
      std::clamp((viewport()->width() - measures.axisWidth) / columns, kNarrowColumn * character,
                 kWideColumn * character);
  const double missing = answer_->icicle.anyMissing ? measures.missingHeight : 0;
  const double fitting =
      viewport()->height() - measures.headHeight - missing - measures.footHeight;
  measures.boxesHeight = std::max(4 * metrics.height(), fitting) * zoom_;
  return measures;
}

void PictureView::LayOut() {
  layout_.reset();
  if (answer_ && !answer_->icicle.columns.empty()) {
    layout_ = std::make_unique<reports::IcicleLayout>(answer_->result, answer_->icicle, Measures(),
                                                      words_);
    if (!BoxAt(*layout_, current_)) {
      current_ = {};
    }
  }
  const QSizeF all = layout_ ? QSizeF(layout_->Width(), layout_->Height()) : QSizeF();
  const auto set = [](QScrollBar& bar, double whole, int page) {
    bar.setRange(0, std::max(0, static_cast<int>(std::ceil(whole)) - page));
    bar.setPageStep(page);
    bar.setSingleStep(std::max(1, page / 12));
  };
  set(*verticalScrollBar(), all.height(), viewport()->height());
  // Comes and goes, and then everything is laid out for the other height before this returns.
  set(*horizontalScrollBar(), all.width(), viewport()->width());
  Announce();
  viewport()->update();
}

reports::IcicleLayout PictureView::LayoutToSave() const {
  return {answer_->result, answer_->icicle, {}, words_};
}

QString PictureView::CurrentText() const {
  const std::optional<IcicleBox> box = layout_ ? BoxAt(*layout_, current_) : std::nullopt;
  return box ? QString::fromStdString(layout_->Name(current_.column)) + ". " +
                   QString::fromStdString(layout_->Text(current_.column, *box))
             : QString();
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::TextAntialiasing);
  const PictureColors colors = PictureColorsOf(palette());
  if (!layout_) {
    painter.fillRect(viewport()->rect(), colors.ground);
    painter.setPen(colors.quiet);
    painter.drawText(viewport()->rect(), Qt::AlignCenter, context_.Text(kPictureEmpty));
    return;
  }
  PicturePainter(painter, *layout_, colors, viewport()->size(), InPicture({0, 0}))
      .Paint(current_, hovered_, hasFocus());
}

void PictureView::resizeEvent(QResizeEvent*) {
  LayOut();
}

void PictureView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    LayOut();
  }
}

QPointF PictureView::InPicture(const QPointF& position) const {
  return position + QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value());
}

// Nothing is under what stands above the boxes and beside them.
std::optional<PicturePlace> PictureView::PlaceAt(const QPointF& position) const {
  if (!layout_ || position.y() < layout_->Measures().headHeight ||
      position.x() < layout_->Measures().axisWidth) {
    return std::nullopt;
  }
  const QPointF point = InPicture(position);
  return PlaceUnder(*layout_, point.x(), point.y());
}

void PictureView::SetCurrent(PicturePlace place) {
  current_ = place;
  Announce();
  viewport()->update();
  frame_.UpdateCommands();
}

void PictureView::SetHovered(std::optional<PicturePlace> place) {
  if (hovered_ != place) {
    hovered_ = place;
    viewport()->update();
  }
}

void PictureView::Announce() {
  setAccessibleDescription(CurrentText());
  if (QAccessible::isActive()) {
    QAccessibleEvent event(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
  }
}

void PictureView::keyPressEvent(QKeyEvent* event) {
  if (!layout_) {
    return QAbstractScrollArea::keyPressEvent(event);
  }
  const auto move = [this](PictureMove to) {
    SetCurrent(Moved(*layout_, current_, to));
    ScrollToCurrent();
  };
  const double middle = viewport()->height() / 2.0;
  switch (event->key()) {
    case Qt::Key_Up:
      return move(PictureMove::kUp);
    case Qt::Key_Down:
      return move(PictureMove::kDown);
    case Qt::Key_Left:
      return move(PictureMove::kLeft);
    case Qt::Key_Right:
      return move(PictureMove::kRight);
    case Qt::Key_Home:
      return move(PictureMove::kFirst);
    case Qt::Key_End:
      return move(PictureMove::kLast);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return ZoomTo(zoom_ * kZoomStep, middle);
    case Qt::Key_Minus:
      return ZoomTo(zoom_ / kZoomStep, middle);
    case Qt::Key_0:
    case Qt::Key_Escape:
      return ZoomTo(1, middle);
    case Qt::Key_Z:
      return ZoomIntoCurrent();
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Follow();
    default:
      QAbstractScrollArea::keyPressEvent(event);
  }
}

void PictureView::ZoomTo(double zoom, double fixed) {
  const double most = std::min(kMostHeight, static_cast<double>(answer_->icicle.most) *
                                                kMostPixelsOfAByte) /
                      (layout_->Measures().boxesHeight / zoom_);
  const double head = layout_->Measures().headHeight;
  const double inBoxes = (InPicture({0, fixed}).y() - head) / zoom_;
  zoom_ = std::clamp(zoom, 1.0, std::max(1.0, most));
  LayOut();
  verticalScrollBar()->setValue(static_cast<int>(inBoxes * zoom_ + head - fixed));
}

// As high as what is seen of the boxes.
void PictureView::ZoomIntoCurrent() {
  const std::optional<IcicleBox> box = BoxAt(*layout_, current_);
  if (!box || box->height <= 0) {
    return;
  }
  const double head = layout_->Measures().headHeight;
  ZoomTo(zoom_ * (viewport()->height() - head) / box->height, viewport()->height() / 2.0);
  if (const std::optional<IcicleBox> zoomed = BoxAt(*layout_, current_)) {
    verticalScrollBar()->setValue(static_cast<int>(zoomed->top - head));
  }
}

void PictureView::ScrollToCurrent() {
  const std::optional<IcicleBox> box = BoxAt(*layout_, current_);
  if (!box) {
    return;
  }
  const auto show = [](QScrollBar& bar, double first, double last, double before, double page) {
    const double shown = bar.value();
    if (first < shown + before) {
      bar.setValue(static_cast<int>(first - before));
    } else if (last > shown + page) {
      bar.setValue(static_cast<int>(std::min(last - page, first - before)));
    }
  };
  const double left = layout_->LeftOf(current_.column);
  show(*verticalScrollBar(), box->top, box->top + box->height, layout_->Measures().headHeight,
       viewport()->height());
  show(*horizontalScrollBar(), left, left + layout_->Measures().columnWidth,
       layout_->Measures().axisWidth, viewport()->width());
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  if (const std::optional<PicturePlace> place = PlaceAt(event->position())) {
    SetCurrent(*place);
  }
}

void PictureView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && PlaceAt(event->position())) {
    Follow();
  }
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
  SetHovered(PlaceAt(event->position()));
}

void PictureView::leaveEvent(QEvent* event) {
  QAbstractScrollArea::leaveEvent(event);
  SetHovered(std::nullopt);
}

void PictureView::wheelEvent(QWheelEvent* event) {
  if (!layout_ || !event->modifiers().testFlag(Qt::ControlModifier)) {
    return QAbstractScrollArea::wheelEvent(event);
  }
  constexpr double kNotch = 120;
  ZoomTo(zoom_ * std::pow(kZoomStep, event->angleDelta().y() / kNotch), event->position().y());
  event->accept();
}

bool PictureView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) {
    return QAbstractScrollArea::viewportEvent(event);
  }
  const auto* help = static_cast<QHelpEvent*>(event);
  const std::optional<PicturePlace> place = PlaceAt(help->pos());
  const std::optional<IcicleBox> box = place ? BoxAt(*layout_, *place) : std::nullopt;
  if (box) {
    const std::string text = layout_->Text(place->column, *box);
    QToolTip::showText(help->globalPos(),
                       QString::fromStdString(text).toHtmlEscaped().replace("\n", "<br>"), this);
  } else {
    QToolTip::hideText();
  }
  return true;
}

void PictureView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  AddCommands(
      *menu, context_, {Command::kAdjustStackSize},
      [this](Command command) { return StateOf(command).value_or(CommandState()); },
      [this](Command command) { Execute(command); });
  ShowPrompts(*menu, *this);
  menu->popup(event->globalPos());
  event->accept();
}

std::optional<CommandState> PictureView::StateOf(Command command) {
  return FunctionCommandState(command, CurrentFunction(), context_.document);
}

void PictureView::Execute(Command command) {
  ExecuteFunctionCommand(command, CurrentFunction(), frame_);
}

void PictureView::Follow() {
  const std::vector<uint32_t> path =
      PathTo(answer_->icicle.columns[current_.column], current_.part);
  if (!path.empty()) {
    showPath_(path);
  }
}

StkFunction* PictureView::CurrentFunction() const {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  const std::optional<uint32_t> function =
      layout_ && functions ? FunctionAt(*layout_, current_) : std::nullopt;
  return function && *function < functions->Count() ? functions->Functions()[*function] : nullptr;
}

}  // namespace velkor::ui
