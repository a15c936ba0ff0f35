#include "ui/navigation/navigator.h"

#include <utility>

namespace velkor::ui {

namespace {

constexpr uint32_t kNoWay = kDialogTextKey * 502 + 20;
constexpr uint32_t kTooDeep = kDialogTextKey * 502 + 21;

WayHistory::Way Indices(const StkFunctionList& functions) {
  WayHistory::Way way;
  way.reserve(functions.size());
  for (const StkFunction* function : functions) {
    way.push_back(function->index);
  }
  return way;
}

}  // namespace

Navigator::Navigator(UiContext& context, CStkTreeView& tree, FrameOperations& frame,
                     std::function<void(const QString&)> tell)
    : context_(context), tree_(tree), frame_(frame), tell_(std::move(tell)), work_([this] {
        return context_.document.BelongsToJob();
      }) {
  context_.document.AddView(*this);
}

Navigator::~Navigator() {
  context_.document.RemoveView(*this);
}

void Navigator::ShowInTree(StkFunction& function) {
  wanted_ = &function;
  if (waysAreKnown_) {
    GoToWanted();
  } else if (!ways_) {
    FindWays();
  }
}

void Navigator::FindWays() {
  const StkFunctionTable* functions = context_.document.FunctionTable();
  const StkRootList* roots = context_.document.RootList();
  if (!functions || !roots) {
    return;
  }
  ways_.emplace(*functions, roots->Functions());
  work_.Start([this] { return ways_->Step(); },
              [this] {
                waysAreKnown_ = true;
                GoToWanted();
              });
}

void Navigator::GoToWanted() {
  if (const StkFunction* function = std::exchange(wanted_, nullptr)) {
    GoTo(ways_->To(*function));
  }
}

void Navigator::ShowCallee(StkFunction& function) {
  StkFunctionList way = tree_.SelectedWay();
  way.push_back(&function);
  GoTo(way);
}

void Navigator::GoTo(const StkFunctionList& way) {
  WayHistory::Way from = Indices(tree_.SelectedWay());
  if (tree_.ShowWay(way)) {
    history_.Jump(std::move(from), Indices(way));
    frame_.UpdateCommands();
  } else if (!context_.document.BelongsToJob()) {
    tell_(context_.Text(way.size() > CStkTreeView::kDeepest ? kTooDeep : kNoWay));
  }
}

void Navigator::OnUpdate(ViewHint hint) {
  switch (hint) {
    case HINT_CLEAR:
      history_.Clear();
      return Forget();
    case HINT_RESULTS:
    case HINT_STRUCTURE:
      return Forget();
    default:
      return;
  }
}

std::optional<CommandState> Navigator::StateOf(Command command) {
  const bool canGo = context_.document.FunctionTable() != nullptr;
  switch (command) {
    case Command::kGoBack:
      return CommandState{canGo && history_.CanGoBack()};
    case Command::kGoForward:
      return CommandState{canGo && history_.CanGoForward()};
    default:
      return std::nullopt;
  }
}

void Navigator::Execute(Command command) {
  WayHistory::Way from = Indices(tree_.SelectedWay());
  if (command == Command::kGoBack) {
    Return(history_.GoBack(std::move(from)));
  } else if (command == Command::kGoForward) {
    Return(history_.GoForward(std::move(from)));
  }
}

// A way that is no more leads to its function by another.
void Navigator::Return(const WayHistory::Way& way) {
  const StkFunctionList& all = context_.document.FunctionTable()->Functions();
  StkFunctionList functions;
  functions.reserve(way.size());
  for (const uint32_t index : way) {
    if (index < all.size()) {
      functions.push_back(all[index]);
    }
  }
  if (!tree_.ShowWay(functions) && !functions.empty()) {
    ShowInTree(*functions.back());
  }
  frame_.UpdateCommands();
}

void Navigator::Forget() {
  work_.Stop();
  ways_.reset();
  waysAreKnown_ = false;
  wanted_ = nullptr;
}

}  // namespace velkor::ui
