#pragma once

#include <QString>

#include "platform/TimerFactory.h"

class QWidget;

namespace quillmeter {

// Messages over the lower edge of a window that belong to no page of it: a setting that could not be stored, a tray
// that is missing. Stays for some seconds, or until it is clicked away. One a window, owned by it.
class FailureBanner {
 public:
  enum class Kind { information, error };
  // Shows a message in `window`; the one shown there before is replaced.
  static void show(QWidget& window, Kind kind, const QString& text, TimerFactory& timers);
};

}  // namespace quillmeter
