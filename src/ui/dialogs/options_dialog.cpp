#include "ui/dialogs/options_dialog.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "platform/host_paths.h"
#include "ui/commands/commands.h"
#include "ui/dialogs/dialog_controls.h"
#include "ui/text_colors.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kOptionsTitle = kDialogTextKey * 504;
constexpr uint32_t kOptionsOk = kOptionsTitle + 1;
constexpr uint32_t kOptionsCancel = kOptionsTitle + 2;
constexpr uint32_t kCodePageLabel = kOptionsTitle + 10;
constexpr uint32_t kMappingsLabel = kOptionsTitle + 11;
constexpr uint32_t kEditorLabel = kOptionsTitle + 12;
constexpr uint32_t kMappingsHint = kOptionsTitle + 13;
constexpr uint32_t kEditorHint = kOptionsTitle + 14;
constexpr auto kUnknownCodePage = static_cast<MessageKey>(kOptionsTitle + 15);
constexpr auto kWrongMapping = static_cast<MessageKey>(kOptionsTitle + 16);
constexpr int kMappingLines = 4;

std::string TypedText(const QString& text) {
  return text.toLocal8Bit().toStdString();
}

}  // namespace

OptionsDialog::OptionsDialog(const UiContext& context, bool hasProject,
                             const ProjectSettings& project, const QString& editor, QWidget* parent)
    : QDialog(parent),
      context_(context),
      codePage_(new QComboBox(this)),
      mappings_(new QPlainTextEdit(this)),
      editor_(new DialogField(this)),
      complaint_(new QLabel(this)) {
  setWindowTitle(context.Text(kOptionsTitle));
  codePage_->setEditable(true);
  codePage_->addItems({"", "utf-8", "932", "cp1252", "iso-8859-1"});
  codePage_->setCurrentText(project.codePage);
  mappings_->setPlainText(project.mappings.join(u'\n'));
  mappings_->setPlaceholderText(context.Text(kMappingsHint));
  SetHintColor(*mappings_);
  mappings_->setTabChangesFocus(true);
  mappings_->setFixedHeight(fontMetrics().lineSpacing() * (kMappingLines + 1));
  editor_->setText(editor);
  editor_->setPlaceholderText(context.Text(kEditorHint));
  SetHintColor(*editor_);
  editor_->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
  complaint_->setWordWrap(true);
  complaint_->hide();
  auto* layout = new QVBoxLayout(this);
  const auto add = [&](uint32_t key, QWidget* field) {
    auto* label = new QLabel(context.Text(key), this);
    label->setBuddy(field);
    field->setAccessibleName(context.Text(key).remove(u'&').remove(u':'));
    layout->addWidget(label);
    layout->addWidget(field);
  };
  add(kCodePageLabel, codePage_);
  add(kMappingsLabel, mappings_);
  add(kEditorLabel, editor_);
  codePage_->setEnabled(hasProject);
  mappings_->setEnabled(hasProject);
  layout->addWidget(complaint_);
  auto* buttons = new QHBoxLayout;
  auto* ok = new DialogButton(context.Text(kOptionsOk), this);
  auto* cancel = new DialogButton(context.Text(kOptionsCancel), this);
  ok->setDefault(true);
  buttons->addStretch(1);
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

ProjectSettings OptionsDialog::Project() const {
  ProjectSettings project{.codePage = codePage_->currentText().trimmed(), .mappings = {}};
  for (const QString& line : mappings_->toPlainText().split(u'\n')) {
    if (!line.trimmed().isEmpty()) {
      project.mappings.push_back(line.trimmed());
    }
  }
  return project;
}

void OptionsDialog::accept() {
  const auto complain = [this](MessageKey key, const QString& text, QWidget& field) {
    complaint_->setText(
        context_.Decoded(context_.messages.FormatMessageText(key, {context_.Encoded(text)})));
    complaint_->show();
    field.setFocus();
  };
  const ProjectSettings project = Project();
  if (!project.codePage.isEmpty() && !CodePage::FromName(TypedText(project.codePage))) {
    return complain(kUnknownCodePage, project.codePage, *codePage_);
  }
  HostPaths paths(context_.host.codePage, CodePage::FromLocale());
  for (const QString& mapping : project.mappings) {
    if (!paths.AddMapping(TypedText(mapping))) {
      return complain(kWrongMapping, mapping, *mappings_);
    }
  }
  QDialog::accept();
}

}  // namespace velkor::ui
