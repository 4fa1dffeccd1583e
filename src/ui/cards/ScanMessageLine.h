#pragma once

#include <functional>
#include <optional>

#include <QWidget>

#include "agents/model/AgentScanStatus.h"

class QPushButton;

namespace quillmeter {

class Paragraph;

// What the last scan has to say, with a button that leads to the settings where a folder is missing. Hidden while there
// is nothing to say.
class ScanMessageLine : public QWidget {
 public:
  ScanMessageLine(const QString& objectName, std::function<void()> connectAgents, QWidget* parent);
  void setActionTitle(const QString& title);
  void show(const std::optional<AgentScanStatus>& status, const QString& message);

 private:
  Paragraph* message_;
  QPushButton* connect_;
};

}  // namespace quillmeter
