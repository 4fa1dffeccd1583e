#include "ui/screentime/ClearRecordDialog.h"

#include <utility>

#include <QDialog>
#include <QEvent>
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

class ClearRecordDialog final : public QDialog {
 public:
  explicit ClearRecordDialog(QWidget* page);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QLayout* makeMessage();
  QLayout* makeButtons();
  void retranslate();

  Paragraph* title_ = nullptr;
  Paragraph* text_ = nullptr;
  QPushButton* clear_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

ClearRecordDialog::ClearRecordDialog(QWidget* page) : QDialog(page) {
  setObjectName(dialogName);
  setAttribute(Qt::WA_DeleteOnClose);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(22, 20, 22, 18);
  column->setSpacing(18);
  column->addLayout(makeMessage());
  column->addLayout(makeButtons());
  column->setSizeConstraint(QLayout::SetFixedSize);
  retranslate();
  cancel_->setFocus();
}

QLayout* ClearRecordDialog::makeMessage() {
  auto* symbol = new SymbolView("trash", dangerTint, 20, this);
  symbol->setHasGround(true);
  title_ = new Paragraph(TextRole::heading, TextTone::primary, this);
  text_ = new Paragraph(TextRole::body, TextTone::secondary, this);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(4);
  for (Paragraph* paragraph : {title_, text_}) {
    paragraph->setMinimumWidth(textWidth);
    texts->addWidget(paragraph);
  }
  auto* message = new QHBoxLayout;
  message->setSpacing(14);
  message->addWidget(symbol, 0, Qt::AlignTop);
  message->addLayout(texts, 1);
  return message;
}

QLayout* ClearRecordDialog::makeButtons() {
  clear_ = new QPushButton(this);
  clear_->setObjectName("screenTime.clearDialog.clear");
  clear_->setAutoDefault(false);
  cancel_ = new QPushButton(this);
  cancel_->setObjectName("screenTime.clearDialog.cancel");
  cancel_->setDefault(true);
  connect(clear_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(10);
  buttons->addStretch(1);
  buttons->addWidget(clear_);
  buttons->addWidget(cancel_);
  return buttons;
}

void ClearRecordDialog::retranslate() {
  setWindowTitle(qtText(QM_TR("清除记录")));
  title_->setText(qtText(QM_TR("清除全部屏幕使用时间记录？")));
  text_->setText(qtText(QM_TR("这台电脑上的记录会被删除，无法恢复。")));
  setAccessibleDescription(text_->text());
  clear_->setText(qtText(QM_TR("清除")));
  cancel_->setText(qtText(QM_TR("取消")));
}

void ClearRecordDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) retranslate();
}

}  // namespace

void openClearRecordDialog(QWidget* page, std::function<void()> confirmed) {
  if (page->findChild<QDialog*>(dialogName) != nullptr) return;
  auto* dialog = new ClearRecordDialog(page);
  QObject::connect(dialog, &QDialog::accepted, page, std::move(confirmed));
  dialog->open();
}

}  // namespace quillmeter
