#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "document/document.h"
#include "ui/commands/command_target.h"
#include "ui/commands/frame_operations.h"
#include "ui/navigation/shortest_ways.h"
#include "ui/navigation/way_history.h"
#include "ui/sliced_work.h"
#include "ui/ui_context.h"
#include "ui/views/call_tree_view.h"

namespace velkor::ui {

// The ways to nodes of the call tree from everywhere else, and back. Told of the document's changes
// from its creation to its destruction. User-interface thread.
class Navigator : public View, public CommandTarget {
 public:
  // tell: what the user reads when there is no way.
  Navigator(UiContext& context, CStkTreeView& tree, FrameOperations& frame,
            std::function<void(const QString&)> tell);
  ~Navigator() override;
  Navigator(const Navigator&) = delete;
  Navigator& operator=(const Navigator&) = delete;

  // By a shortest way from the top level; a little later in a large analysis.
  void ShowInTree(StkFunction& function);
  // Below the selected node.
  void ShowCallee(StkFunction& function);

  void OnUpdate(ViewHint hint) override;
  std::optional<CommandState> StateOf(Command command) override;
  void Execute(Command command) override;

 private:
  void FindWays();
  void GoToWanted();
  void GoTo(const StkFunctionList& way);
  void Return(const WayHistory::Way& way);
  void Forget();

  UiContext& context_;
  CStkTreeView& tree_;
  FrameOperations& frame_;
  std::function<void(const QString&)> tell_;
  std::optional<ShortestWays> ways_;
  bool waysAreKnown_ = false;
  StkFunction* wanted_ = nullptr;  // as soon as the ways are known
  SlicedWork work_;
  WayHistory history_;
};

}  // namespace velkor::ui
