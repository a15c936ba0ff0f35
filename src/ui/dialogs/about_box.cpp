#include "ui/dialogs/about_box.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/commands/toolbar_icons.h"
#include "ui/dialogs/dialog_controls.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kTitleKey = kDialogTextKey * 100;
constexpr uint32_t kOkKey = kTitleKey + 1;
constexpr uint32_t kVersionKey = kTitleKey + 1015;
constexpr uint32_t kRightsKeys[] = {kTitleKey + 2001, kTitleKey + 2002};
constexpr int kIconSize = 48;

}  // namespace

AboutBox::AboutBox(const UiContext& context, const VersionTexts& version, QWidget* parent)
    : QDialog(parent) {
  const auto format = [&context](uint32_t key, MessageArguments arguments) {
    return context.Decoded(context.messages.FormatMessageText(MessageKey{key}, arguments));
  };
  setWindowTitle(format(kTitleKey, {version.productName}));
  auto* texts = new QVBoxLayout;
  auto* product =
      new QLabel(format(kVersionKey, {version.productName, version.versionSource}), this);
  product->setObjectName("1015");
  product->setTextFormat(Qt::PlainText);
  texts->addWidget(product);
  for (const uint32_t key : kRightsKeys) {
    texts->addWidget(new QLabel(context.Text(key), this));
  }
  auto* ok = new DialogButton(context.Text(kOkKey), this);
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  texts->addWidget(ok, 0, Qt::AlignRight);

  auto* icon = new QLabel(this);
  icon->setPixmap(ProgramIcon().pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(icon, 0, Qt::AlignTop);
  layout->addLayout(texts);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace velkor::ui
