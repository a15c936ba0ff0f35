#pragma once

#include <QWidget>

#include "messages/catalogue.h"
#include "platform/host.h"
#include "ui/help/help_location.h"
#include "ui/language.h"

namespace velkor::ui {

class HelpBrowser;

// The window that shows help: one for the whole run, beside whatever window is in use, also while
// that is a modal dialog. Closing it hides it. A page that the location does not lead to is shown
// as it is linked into the program. User-interface thread.
class HelpViewer : public QWidget {
  Q_OBJECT

 public:
  // productName: for the title.
  HelpViewer(const Host& host, const StkMessages& messages, HelpLocation location,
             Language language, const QString& productName);

  // 1 to 3. Shows the window and brings it to the front.
  void ShowTopic(int topic);

 private:
  void ComeForward();

  const Host& host_;
  HelpLocation location_;
  HelpBrowser* browser_;
};

}  // namespace velkor::ui
