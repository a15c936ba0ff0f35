#include "ui/function_menu.h"

#include <QAction>
#include <QActionGroup>

namespace velkor {

void AddCommands(QMenu& menu, const UiContext& context, const std::vector<Command>& commands,
                 const CommandStateQuery& stateOf, const CommandAction& act) {
  QActionGroup* group = new QActionGroup(&menu);
  group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
  for (const Command command : commands) {
    const CommandState state = stateOf(command);
    QAction* action = menu.addAction(context.Text(kMenuTextKey + static_cast<uint32_t>(command)));
    action->setActionGroup(group);
    action->setCheckable(state.radioMark);
    action->setChecked(state.radioMark);
    action->setEnabled(state.enabled);
    QObject::connect(action, &QAction::triggered, &menu, [act, command] { act(command); });
  }
}

}  // namespace velkor
