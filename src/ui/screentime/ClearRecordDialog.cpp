#include "ui/screentime/ClearRecordDialog.h"

#include <utility>

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SymbolView.h"

namespace quillmeter {
namespace {

constexpr const char* dialogName = "screenTime.clearDialog";
constexpr const char* dangerTint = "E5484D";
constexpr int textWidth = 320;

QLayout* makeMessage(QDialog* dialog) {
  auto* symbol = new SymbolView("trash", dangerTint, 20, dialog);
  symbol->setHasGround(true);
  auto* title = new Paragraph(TextRole::heading, TextTone::primary, dialog);
  title->setText(qtText(QM_TR("清除全部屏幕使用时间记录？")));
  auto* text = new Paragraph(TextRole::body, TextTone::secondary, dialog);
  text->setText(qtText(QM_TR("这台电脑上的记录会被删除，无法恢复。")));
  auto* texts = new QVBoxLayout;
  texts->setSpacing(4);
  for (Paragraph* paragraph : {title, text}) {
    paragraph->setMinimumWidth(textWidth);
    texts->addWidget(paragraph);
  }
  auto* message = new QHBoxLayout;
  message->setSpacing(14);
  message->addWidget(symbol, 0, Qt::AlignTop);
  message->addLayout(texts, 1);
  return message;
}

}  // namespace

void openClearRecordDialog(QWidget* page, std::function<void()> confirmed) {
  if (page->findChild<QDialog*>(dialogName) != nullptr) return;
  auto* dialog = new QDialog(page);
  dialog->setObjectName(dialogName);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(qtText(QM_TR("清除记录")));
  dialog->setAccessibleDescription(qtText(QM_TR("这台电脑上的记录会被删除，无法恢复。")));
  auto* clear = new QPushButton(qtText(QM_TR("清除")), dialog);
  clear->setObjectName("screenTime.clearDialog.clear");
  clear->setAutoDefault(false);
  auto* cancel = new QPushButton(qtText(QM_TR("取消")), dialog);
  cancel->setObjectName("screenTime.clearDialog.cancel");
  cancel->setDefault(true);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(10);
  buttons->addStretch(1);
  buttons->addWidget(clear);
  buttons->addWidget(cancel);
  auto* column = new QVBoxLayout(dialog);
  column->setContentsMargins(22, 20, 22, 18);
  column->setSpacing(18);
  column->addLayout(makeMessage(dialog));
  column->addLayout(buttons);
  column->setSizeConstraint(QLayout::SetFixedSize);
  QObject::connect(clear, &QPushButton::clicked, dialog, &QDialog::accept);
  QObject::connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
  QObject::connect(dialog, &QDialog::accepted, page, std::move(confirmed));
  cancel->setFocus();
  dialog->open();
}

}  // namespace quillmeter
