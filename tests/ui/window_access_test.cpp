#include <QAccessible>
#include <QAction>
#include <QDockWidget>
#include <QImage>
#include <QMenuBar>
#include <QPixmap>
#include <QTabBar>
#include <set>

#include "main_window.h"
#include "ui/commands/command_menus.h"
#include "ui/dialogs/legend.h"
#include "ui/dialogs/options_dialog.h"
#include "ui/sign_colors.h"
#include "ui/views/function_icons.h"
#include "ui/views/log_marks.h"

namespace velkor::ui {
namespace {

// Which parts of the image are made of the colour.
std::vector<bool> Shape(const QImage& image, const QColor& color) {
  std::vector<bool> shape;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      shape.push_back(pixel.alpha() > 200 && std::abs(pixel.lightness() - color.lightness()) < 60);
    }
  }
  return shape;
}

TEST(WindowSigns, AreSeenOnEveryBackgroundWithoutTheirColours) {
  for (const QColor background : {QColor(Qt::white), QColor(0xEFEFEF), QColor(0x2B2B2B),
                                  QColor(0x1B1E20), QColor(Qt::black)}) {
    const SignColors colors = SignColorsOn(background);
    for (const QColor& color :
         {colors.ink, colors.note, colors.warning, colors.error, colors.accent, colors.good}) {
      EXPECT_GE(Contrast(color, background), 4.5)
          << color.name().toStdString() << " on " << background.name().toStdString();
    }
  }
  std::set<std::vector<bool>> signs;
  for (int kind = 0; kind < 5; ++kind) {
    const QColor ink = InkOn(KindColor(kind));
    EXPECT_GE(Contrast(ink, KindColor(kind)), 4.5) << kind;
    const QImage inside = TreeIcon(kind).pixmap(QSize(64, 64)).toImage().copy(14, 14, 36, 36);
    signs.insert(Shape(inside, ink));
  }
  EXPECT_EQ(signs.size(), 5U);
}

TEST_F(MainWindow, EverythingWithTheKeyboardHasAName) {
  StartAndFinish();
  for (QDockWidget* panel : app->Frame().findChildren<QDockWidget*>()) {
    panel->show();
  }
  HandleEvents();
  Legend* legend = new Legend(app->Context(), &app->Frame());
  OptionsDialog options(app->Context(), true, {}, {}, &app->Frame());
  for (QWidget* window : {static_cast<QWidget*>(&app->Frame()), static_cast<QWidget*>(legend),
                          static_cast<QWidget*>(&options)}) {
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      QAccessibleInterface* told = QAccessible::queryAccessibleInterface(widget);
      const bool takesKeys = widget->focusPolicy() != Qt::NoFocus &&
                             !widget->objectName().startsWith("qt_") && !widget->focusProxy() &&
                             widget->window() == window &&
                             !qobject_cast<QTabBar*>(widget);  // each tab has a name
      if (takesKeys) {
        EXPECT_TRUE(told && !told->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << " "
            << widget->parentWidget()->metaObject()->className();
      }
    }
  }
  delete legend;
}

TEST_F(MainWindow, EveryCommandHasKeysOfItsOwnThatMenusShow) {
  std::map<QString, const QAction*> keys;
  for (const QAction* action : app->Frame().actions()) {
    EXPECT_FALSE(action->shortcuts().isEmpty()) << action->text().toStdString();
    for (const QKeySequence& sequence : action->shortcuts()) {
      EXPECT_TRUE(keys.emplace(sequence.toString(), action).second)
          << sequence.toString().toStdString();
    }
  }
  std::set<const QAction*> inMenus;
  const std::function<void(const QWidget&)> collect = [&](const QWidget& menu) {
    for (const QAction* action : menu.actions()) {
      if (action->menu()) {
        collect(*action->menu());
      }
      inMenus.insert(action);
    }
  };
  collect(*app->Frame().menuBar());
  for (const QAction* action : app->Frame().actions()) {
    const bool isOfContextMenus = action->text().contains("Copy") || action->text() == "C&lear All";
    EXPECT_TRUE(inMenus.contains(action) || isOfContextMenus) << action->text().toStdString();
  }
}

}  // namespace
}  // namespace velkor::ui
