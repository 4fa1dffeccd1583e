#include "ui/cards/ScanMessageLine.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "ui/widgets/Paragraph.h"

namespace quillmeter {

namespace {

constexpr int spacing = 12;

}  // namespace

ScanMessageLine::ScanMessageLine(const QString& objectName, std::function<void()> connectAgents, QWidget* parent)
    : QWidget(parent),
      message_(new Paragraph(TextRole::caption, TextTone::secondary, this)),
      connect_(new QPushButton(this)) {
  message_->setObjectName(objectName + QStringLiteral(".message"));
  connect_->setObjectName(objectName + QStringLiteral(".connect"));
  connect(connect_, &QPushButton::clicked, this, [connectAgents = std::move(connectAgents)] { connectAgents(); });
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(spacing);
  row->addWidget(message_, 1);
  row->addWidget(connect_, 0, Qt::AlignVCenter);
  hide();
}

void ScanMessageLine::setActionTitle(const QString& title) {
  connect_->setText(title);
}

void ScanMessageLine::show(const std::optional<AgentScanStatus>& status, const QString& message) {
  setVisible(status.has_value());
  if (!status) return;
  const bool isIncomplete = status->kind == AgentScanStatus::Kind::incompleteLogs;
  message_->setTone(isIncomplete ? TextTone::warning : TextTone::secondary);
  if (message_->text() != message) message_->setText(message);
  connect_->setVisible(status->kind == AgentScanStatus::Kind::missingAuthorization);
}

}  // namespace quillmeter
