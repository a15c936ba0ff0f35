#include "ui/commands/context_menu.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QProxyStyle>
#include <QStatusTipEvent>

#include "ui/commands/command_menus.h"

namespace velkor::ui {

namespace {

class AllItemsStyle : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_Menu_AllowActiveAndDisabled
               ? 1
               : QProxyStyle::styleHint(hint, option, widget, data);
  }
};

// With the keys as a text: as keys of their own they would be ambiguous with the window's.
QString ItemText(Command command, const UiContext& context) {
  const QList<QKeySequence> keys = KeysOf(command);
  const QString text = context.Text(kMenuTextKey + static_cast<uint32_t>(command));
  return keys.isEmpty() ? text : text + u'\t' + keys.front().toString(QKeySequence::NativeText);
}

}  // namespace

void AddCommands(QMenu& menu, const UiContext& context, const std::vector<Command>& commands,
                 const CommandStateQuery& stateOf, const CommandAction& act) {
  PointAtDisabledItems(menu);
  auto* group = new QActionGroup(&menu);
  group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
  for (const Command command : commands) {
    const CommandState state = stateOf(command);
    QAction* action = menu.addAction(ItemText(command, context));
    action->setActionGroup(group);
    action->setCheckable(state.radioMark);
    action->setChecked(state.radioMark);
    action->setEnabled(state.enabled);
    action->setStatusTip(PromptOf(command, context));
    QObject::connect(action, &QAction::triggered, &menu, [act, command] { act(command); });
  }
}

void PointAtDisabledItems(QMenu& menu) {
  auto* style = new AllItemsStyle;
  style->setParent(&menu);
  menu.setStyle(style);
}

// The toolkit tells the window only of menus that belong to its menu bar.
void ShowPrompts(QMenu& menu, QWidget& view) {
  const auto show = [&view](const QString& prompt) {
    QStatusTipEvent event(prompt);
    QCoreApplication::sendEvent(&view, &event);
  };
  QObject::connect(&menu, &QMenu::hovered, &view,
                   [show](const QAction* action) { show(action->statusTip()); });
  QObject::connect(&menu, &QMenu::aboutToHide, &view, [show] { show({}); });
}

QString PromptOf(Command command, const UiContext& context) {
  return context.Text(static_cast<uint32_t>(command)).section(u'\n', 0, 0);
}

}  // namespace velkor::ui
