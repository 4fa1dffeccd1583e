#pragma once

#include <functional>

class QWidget;

namespace quillmeter {

// Asks before the record is removed: a sheet of the page's window, which deletes itself. Does not block.
void openClearRecordDialog(QWidget* page, std::function<void()> confirmed);

}  // namespace quillmeter
