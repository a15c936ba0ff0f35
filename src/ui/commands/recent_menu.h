#pragma once

#include <QMenu>
#include <QString>
#include <functional>

#include "ui/ui_context.h"
#include "ui/window_settings.h"

namespace velkor::ui {

// Fills the menu with the recent inputs whenever it is about to be shown; one that is chosen is
// opened. Everything given outlives the menu.
void ShowRecentInputs(QMenu& menu, const UiContext& context, WindowSettings& settings,
                      std::function<void(const QString& path)> open);

}  // namespace velkor::ui
