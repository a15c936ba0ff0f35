#include "ui/commands/recent_menu.h"

#include <utility>

#include "ui/commands/commands.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kClearRecent = kDialogTextKey * 502 + 30;
constexpr uint32_t kNoRecent = kDialogTextKey * 502 + 31;

}  // namespace

void ShowRecentInputs(QMenu& menu, const UiContext& context, WindowSettings& settings,
                      std::function<void(const QString& path)> open) {
  // A menu without items is not shown at all.
  menu.addAction(context.Text(kNoRecent))->setEnabled(false);
  const auto fill = [&menu, &context, &settings, open = std::move(open)] {
    menu.clear();
    int number = 0;
    for (const QString& path : settings.Recent()) {
      const QString text = QString(path).replace('&', "&&");
      QAction* item = menu.addAction(QString("&%1 %2").arg(++number).arg(text));
      QObject::connect(item, &QAction::triggered, &menu, [open, path] { open(path); });
    }
    if (number == 0) {
      menu.addAction(context.Text(kNoRecent))->setEnabled(false);
      return;
    }
    menu.addSeparator();
    QObject::connect(menu.addAction(context.Text(kClearRecent)), &QAction::triggered, &menu,
                     [&settings] { settings.ClearRecent(); });
  };
  QObject::connect(&menu, &QMenu::aboutToShow, &menu, fill);
}

}  // namespace velkor::ui
