#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "document/document.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor::ui {

// What every part of the window works with. Owned by the application, which outlives them all.
struct UiContext {
  Host& host;
  const StkMessages& messages;
  StkReporter& reporter;
  CStkDoc& document;

  // A text of the analysis (bytes of the run's code page) for the screen; undecodable bytes show
  // as U+FFFD.
  QString Decoded(std::string_view bytes) const;
  // A text from the screen for the analysis; characters that the code page lacks become "?".
  std::string Encoded(const QString& text) const;
  // A catalogue text for the screen.
  QString Text(uint32_t key) const;
};

}  // namespace velkor::ui
