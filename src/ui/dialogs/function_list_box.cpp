#include "ui/dialogs/function_list_box.h"

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "core/function_text.h"
#include "platform/letter_case.h"
#include "ui/shown_text.h"
#include "ui/views/row_selection.h"

namespace velkor::ui {

namespace {

constexpr size_t kSortedAtOnce = 4096;
constexpr int kLaidOutAtOnce = 20000;
constexpr qint64 kSearchMilliseconds = 10;

std::string RowText(const StkFunction& function, bool added, const CodePage& codePage) {
  return CutToRow((added ? "+" : "") + TextItem(function, ":", codePage), codePage);
}

// Letter case counts for nothing in the letters that every code page shares.
bool StartsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() &&
         std::equal(start.begin(), start.end(), text.begin(), [](char a, char b) {
           return UpperAscii(static_cast<unsigned char>(a)) ==
                  UpperAscii(static_cast<unsigned char>(b));
         });
}

}  // namespace

FunctionListBoxModel::FunctionListBoxModel(const CodePage& codePage, QObject* parent)
    : QAbstractListModel(parent), codePage_(codePage) {}

void FunctionListBoxModel::SetRows(StkFunctionList functions, size_t firstAdded) {
  beginResetModel();
  functions_ = std::move(functions);
  firstAdded_ = firstAdded;
  endResetModel();
}

void FunctionListBoxModel::InsertAdded(size_t row, StkFunction& function) {
  const int position = static_cast<int>(row);
  beginInsertRows({}, position, position);
  functions_.insert(functions_.begin() + position, &function);
  endInsertRows();
}

void FunctionListBoxModel::RemoveAdded(size_t row) {
  const int position = static_cast<int>(row);
  beginRemoveRows({}, position, position);
  functions_.erase(functions_.begin() + position);
  endRemoveRows();
}

void FunctionListBoxModel::RemoveAllAdded() {
  if (functions_.size() > firstAdded_) {
    beginRemoveRows({}, static_cast<int>(firstAdded_), static_cast<int>(functions_.size()) - 1);
    functions_.resize(firstAdded_);
    endRemoveRows();
  }
}

int FunctionListBoxModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(functions_.size());
}

QVariant FunctionListBoxModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) {
    return {};
  }
  const auto row = static_cast<size_t>(index.row());
  return ForScreen(RowText(*functions_[row], row >= firstAdded_, codePage_), codePage_);
}

bool FunctionListBoxModel::NameStartsWith(const StkFunction& function,
                                          std::string_view search) const {
  if (StartsWith(CName(function), search)) {
    return true;
  }
  if (function.Is(FN_DEFINED) && !function.IsStatic()) {
    return false;
  }
  // The whole text is made only where it can begin alike.
  const std::string_view before = function.IsStatic() ? function.file->BaseName(codePage_) : "[";
  return StartsWith(before, search.substr(0, 1)) &&
         StartsWith(FunctionSpecName(function, codePage_), search);
}

QModelIndexList FunctionListBoxModel::match(const QModelIndex& start, int role,
                                            const QVariant& value, int hits,
                                            Qt::MatchFlags flags) const {
  const bool isSearch = role == Qt::DisplayRole && hits == 1 && flags.testFlag(Qt::MatchWrap) &&
                        (flags & Qt::MatchTypeMask) == Qt::MatchStartsWith;
  if (!isSearch || !start.isValid()) {
    return QAbstractListModel::match(start, role, value, hits, flags);
  }
  const QByteArray utf8 = value.toString().toUtf8();
  const std::optional<std::string> search =
      codePage_.FromUtf8({utf8.constData(), static_cast<size_t>(utf8.size())});
  const auto first = static_cast<size_t>(start.row());
  for (size_t i = 0; search && i < functions_.size(); ++i) {
    const size_t row = (first + i) % functions_.size();
    if (NameStartsWith(*functions_[row], *search)) {
      return {index(static_cast<int>(row))};
    }
  }
  return {};
}

// Every row is as wide as the widest that was painted; the view asks once for all of them.
class FunctionListBox::Delegate : public SelectedRowDelegate {
 public:
  using SelectedRowDelegate::SelectedRowDelegate;

  int Widest() const { return widest_; }
  void Forget() { widest_ = 0; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    widest_ = std::max(widest_, QStyledItemDelegate::sizeHint(option, index).width());
    QStyledItemDelegate::paint(painter, option, index);
  }
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {widest_, QStyledItemDelegate::sizeHint(option, index).height()};
  }

 private:
  mutable int widest_ = 0;
};

FunctionListBox::FunctionListBox(const CodePage& codePage, QWidget* parent)
    : QListView(parent),
      codePage_(codePage),
      rows_(new FunctionListBoxModel(codePage, this)),
      delegate_(new Delegate(this)) {
  setModel(rows_);
  setItemDelegate(delegate_);
  setUniformItemSizes(true);
  // So that very many rows are not laid out in one go.
  setLayoutMode(Batched);
  setBatchSize(kLaidOutAtOnce);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setTextElideMode(Qt::ElideNone);
  setHorizontalScrollMode(ScrollPerPixel);
  setTabKeyNavigation(false);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &FunctionListBox::SelectionChanged);
  sortLater_.setInterval(0);
  connect(&sortLater_, &QTimer::timeout, this, [this] { SortSome(); });
}

StkFunction* FunctionListBox::SelectedFunction() const {
  const QModelIndexList selected = selectionModel()->selectedRows();
  return selected.empty() ? nullptr : rows_->FunctionAt(selected.front().row());
}

void FunctionListBox::SetFunctions(StkFunctionList functions, size_t firstAdded) {
  sorter_.reset();
  sortLater_.stop();
  delegate_->Forget();
  rows_->SetRows(std::move(functions), firstAdded);
}

void FunctionListBox::SetFunctionsByName(StkFunctionList functions) {
  const bool isShort = functions.size() <= kSortedAtOnce;
  SetFunctions({}, 0);
  sorter_ = std::make_unique<NameSorter>(std::move(functions), IsBeforeByName(codePage_));
  if (isShort) {
    while (sorter_->Step()) {
    }
    ShowSorted();
  } else {
    sortLater_.start();
  }
}

void FunctionListBox::SortSome() {
  QElapsedTimer slice;
  slice.start();
  while (slice.elapsed() < kSearchMilliseconds) {
    if (!sorter_->Step()) {
      return ShowSorted();
    }
  }
}

void FunctionListBox::ShowSorted() {
  StkFunctionList functions = sorter_->Take();
  const size_t count = functions.size();
  SetFunctions(std::move(functions), count);
}

void FunctionListBox::ShowSelectionAlways(bool always) {
  QPalette colors;
  if (!always) {
    colors.setColor(QPalette::Inactive, QPalette::Highlight, palette().color(QPalette::Base));
    colors.setColor(QPalette::Inactive, QPalette::HighlightedText, palette().color(QPalette::Text));
  }
  setPalette(colors);
}

QSize FunctionListBox::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 34, fontMetrics().height() * 8};
}

void FunctionListBox::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
  const QModelIndexList selected = selectionModel()->selectedRows();
  const bool staysSelected =
      !selected.empty() && (selected.front().row() < start || selected.front().row() > end);
  QListView::rowsAboutToBeRemoved(parent, start, end);
  // The toolkit would select a row beside the removed one, which the user did not choose.
  if (!staysSelected) {
    selectionModel()->clearSelection();
  }
}

void FunctionListBox::paintEvent(QPaintEvent* event) {
  const int before = delegate_->Widest();
  QListView::paintEvent(event);
  if (delegate_->Widest() > before) {
    // Not now: new scroll bars change the area that is being painted.
    QMetaObject::invokeMethod(this, &FunctionListBox::WidenToShownRows, Qt::QueuedConnection);
  }
}

void FunctionListBox::WidenToShownRows() {
  if (delegate_->Widest() > contentsSize().width()) {
    resizeContents(delegate_->Widest(), contentsSize().height());
    updateGeometries();
    viewport()->update();
  }
}

void FunctionListBox::focusInEvent(QFocusEvent* event) {
  QListView::focusInEvent(event);
  emit GotFocus();
}

void FunctionListBox::keyPressEvent(QKeyEvent* event) {
  if (!SelectCurrent(*this, *event)) {
    QListView::keyPressEvent(event);
  }
}

QItemSelectionModel::SelectionFlags FunctionListBox::selectionCommand(const QModelIndex& index,
                                                                      const QEvent* event) const {
  return index.isValid() ? QListView::selectionCommand(index, event)
                         : QItemSelectionModel::NoUpdate;
}

}  // namespace velkor::ui
