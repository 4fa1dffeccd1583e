#pragma once

#include "platform/FolderPicker.h"

class QFileDialog;

namespace quillmeter {

// The folder picker of the desktop: a window of its own, not modal, that picks one existing folder, shows hidden ones
// and creates none. Its message stands above the list where the dialog is Qt's; a system's own dialog has no place for
// one.
class QtFolderPicker final : public FolderPicker {
 public:
  void pick(const FolderPickRequest& request, Completion completion) override;

  // The dialog of a request, not shown yet; deletes itself when it is closed.
  static QFileDialog* makeDialog(const FolderPickRequest& request);
};

}  // namespace quillmeter
