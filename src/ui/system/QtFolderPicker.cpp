#include "ui/system/QtFolderPicker.h"

#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>

namespace quillmeter {

namespace {

QString text(const std::string& utf8) {
  return QString::fromStdString(utf8);
}

// The folder itself, or the nearest one above it that is there.
std::filesystem::path existingStart(std::filesystem::path folder) {
  std::error_code ignored;
  while (!std::filesystem::is_directory(folder, ignored) && folder.has_relative_path()) folder = folder.parent_path();
  return folder;
}

// Above the rows of Qt's own dialog, which move down by one.
void addMessage(QFileDialog& dialog, const QString& message) {
  auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
  if (grid == nullptr) return;
  struct Cell {
    QLayoutItem* item;
    int row, column, rows, columns;
  };
  std::vector<Cell> cells;
  while (grid->count() > 0) {
    Cell cell{};
    grid->getItemPosition(0, &cell.row, &cell.column, &cell.rows, &cell.columns);
    cell.item = grid->takeAt(0);
    cells.push_back(cell);
  }
  for (const Cell& cell : cells) grid->addItem(cell.item, cell.row + 1, cell.column, cell.rows, cell.columns);
  auto* label = new QLabel(message, &dialog);
  label->setObjectName("message");
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  grid->addWidget(label, 0, 0, 1, grid->columnCount());
}

}  // namespace

QFileDialog* QtFolderPicker::makeDialog(const FolderPickRequest& request) {
  auto* dialog = new QFileDialog(nullptr, text(request.title));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::Directory);
  dialog->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly);
  dialog->setFilter(QDir::AllDirs | QDir::Hidden | QDir::NoDotAndDotDot);
  dialog->setLabelText(QFileDialog::Accept, text(request.prompt));
  dialog->setDirectory(QFile::decodeName(existingStart(request.startDirectory).c_str()));
  addMessage(*dialog, text(request.message));
  return dialog;
}

void QtFolderPicker::pick(const FolderPickRequest& request, Completion completion) {
  QFileDialog* dialog = makeDialog(request);
  QObject::connect(dialog, &QFileDialog::finished, dialog, [dialog, completion = std::move(completion)](int result) {
    const QStringList picked = dialog->selectedFiles();
    if (result != QDialog::Accepted || picked.isEmpty()) return completion(std::nullopt);
    completion(std::filesystem::path(QFile::encodeName(picked.first()).toStdString()));
  });
  dialog->show();
  dialog->raise();
  dialog->activateWindow();
}

}  // namespace quillmeter
