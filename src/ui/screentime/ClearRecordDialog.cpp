#include "ui/screentime/ClearRecordDialog.h"

#include <utility>

#include <QMessageBox>
#include <QPushButton>

#include "base/L10n.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

void openClearRecordDialog(QWidget* page, std::function<void()> confirmed) {
  constexpr const char* name = "screenTime.clearDialog";
  if (page->findChild<QMessageBox*>(name) != nullptr) return;
  auto* dialog = new QMessageBox(page);
  dialog->setObjectName(name);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setIcon(QMessageBox::NoIcon);
  dialog->setWindowTitle(qtText(QM_TR("清除记录")));
  dialog->setText(qtText(QM_TR("清除全部屏幕使用时间记录？")));
  dialog->setInformativeText(qtText(QM_TR("这台电脑上的记录会被删除，无法恢复。")));
  QPushButton* clear = dialog->addButton(qtText(QM_TR("清除")), QMessageBox::DestructiveRole);
  QPushButton* cancel = dialog->addButton(qtText(QM_TR("取消")), QMessageBox::RejectRole);
  clear->setObjectName("screenTime.clearDialog.clear");
  cancel->setObjectName("screenTime.clearDialog.cancel");
  dialog->setDefaultButton(cancel);
  dialog->setEscapeButton(cancel);
  QObject::connect(clear, &QPushButton::clicked, page, [confirmed = std::move(confirmed)] { confirmed(); });
  dialog->open();
}

}  // namespace quillmeter
