#include "ui/ui_context.h"

#include <QList>

#include "ui/shown_text.h"

namespace velkor::ui {

QString UiContext::Decoded(std::string_view bytes) const {
  return ForScreen(bytes, host.codePage);
}

std::string UiContext::Encoded(const QString& text) const {
  const QByteArray utf8 = text.toUtf8();
  const std::string_view whole(utf8.constData(), static_cast<size_t>(utf8.size()));
  if (auto encoded = host.codePage.FromUtf8(whole)) {
    return *std::move(encoded);
  }
  std::string bytes;
  for (const uint codePoint : text.toUcs4()) {
    const QByteArray character =
        QString::fromUcs4(reinterpret_cast<const char32_t*>(&codePoint), 1).toUtf8();
    bytes += host.codePage.FromUtf8({character.constData(), static_cast<size_t>(character.size())})
                 .value_or("?");
  }
  return bytes;
}

QString UiContext::Text(uint32_t key) const {
  return Decoded(messages.Text(static_cast<MessageKey>(key)));
}

}  // namespace velkor::ui
