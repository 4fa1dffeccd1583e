#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <QtCore/QDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include "support/TemporaryDirectory.h"
#include "ui/system/QtFolderPicker.h"

namespace quillmeter {
namespace {

bool waitUntil(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, 20'000);
}

QFileDialog* openDialog() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* dialog = qobject_cast<QFileDialog*>(widget);
    if (dialog != nullptr && dialog->isVisible()) return dialog;
  }
  return nullptr;
}

FolderPickRequest requestFor(const std::filesystem::path& start) {
  return {"连接 Codex（1/2）", "第 1/2 个：已为你定位到 ~/.codex。确认后会自动打开下一个目录。", "连接这个目录", start};
}

TEST(QtFolderPicker, showsTheRequestAndHiddenFoldersAndAnswersWithTheFolder) {
  const test::TemporaryDirectory home;
  std::filesystem::create_directories(home.path() / ".codex/sessions");
  QtFolderPicker picker;
  std::optional<std::optional<std::filesystem::path>> answer;
  picker.pick(requestFor(home.path() / ".codex"), [&](auto folder) { answer = folder; });
  ASSERT_TRUE(waitUntil([] { return openDialog() != nullptr; }));
  QFileDialog* dialog = openDialog();
  EXPECT_EQ(dialog->windowTitle(), "连接 Codex（1/2）");
  EXPECT_FALSE(dialog->isModal());
  EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
  EXPECT_TRUE(dialog->filter().testFlag(QDir::Hidden));
  EXPECT_TRUE(dialog->testOption(QFileDialog::ReadOnly)) << "creates no folders";
  EXPECT_EQ(dialog->directory().absolutePath().toStdString(), (home.path() / ".codex").string());
  EXPECT_EQ(dialog->labelText(QFileDialog::Accept), "连接这个目录");
  auto* message = dialog->findChild<QLabel*>("message");
  ASSERT_NE(message, nullptr);
  EXPECT_TRUE(message->text().startsWith("第 1/2 个"));
  auto* list = dialog->findChild<QWidget*>("listView");
  ASSERT_NE(list, nullptr);
  EXPECT_LT(message->mapTo(dialog, QPoint()).y(), list->mapTo(dialog, QPoint()).y());
  if (const char* file = std::getenv("QUILLMETER_SCREENSHOT")) dialog->grab().save(file);
  dialog->selectFile(QString::fromStdString((home.path() / ".codex").string()));
  static_cast<QDialog*>(dialog)->accept();
  ASSERT_TRUE(waitUntil([&] { return answer.has_value(); }));
  ASSERT_TRUE(*answer);
  EXPECT_EQ((*answer)->lexically_normal(), home.path() / ".codex");
}

TEST(QtFolderPicker, closingTheWindowCancelsAndAMissingStartIsLookedForAbove) {
  const test::TemporaryDirectory home;
  QtFolderPicker picker;
  std::optional<std::optional<std::filesystem::path>> answer;
  picker.pick(requestFor(home.path() / "not/there"), [&](auto folder) { answer = folder; });
  ASSERT_TRUE(waitUntil([] { return openDialog() != nullptr; }));
  EXPECT_EQ(openDialog()->directory().absolutePath().toStdString(), home.path().string());
  openDialog()->close();
  ASSERT_TRUE(waitUntil([&] { return answer.has_value(); }));
  EXPECT_FALSE(*answer);
}

}  // namespace
}  // namespace quillmeter
