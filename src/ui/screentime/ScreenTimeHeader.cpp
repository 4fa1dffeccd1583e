#include "ui/screentime/ScreenTimeHeader.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "screentime/ScreenTimeMonitor.h"
#include "ui/screentime/ActivityText.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

ScreenTimeHeader::ScreenTimeHeader(QWidget* parent) : QWidget(parent) {
  title_ = new Paragraph(TextRole::title, TextTone::primary, this);
  title_->setWordWrap(false);
  state_ = new FigureLabel(TextRole::body, TextTone::secondary, this);
  state_->setObjectName("screenTime.state");
  switchTitle_ = new FigureLabel(TextRole::body, TextTone::secondary, this);
  switch_ = new ToggleSwitch(this);
  switch_->setObjectName("screenTime.switch");
  QObject::connect(switch_, &ToggleSwitch::clicked, this, [this](bool on) {
    if (switched_) switched_(on);
  });

  auto* titles = new QVBoxLayout;
  titles->setSpacing(2);
  titles->addWidget(title_);
  titles->addWidget(state_);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(10);
  row->addLayout(titles, 1);
  row->addWidget(switchTitle_, 0, Qt::AlignVCenter);
  row->addWidget(switch_, 0, Qt::AlignVCenter);
  retranslate();
}

void ScreenTimeHeader::showState(const ScreenTimeMonitor& monitor) {
  switch_->setChecked(monitor.enabled());
  switch_->setEnabled(monitor.canEnable());
  const bool counts = monitor.enabled() && !monitor.storageError() && monitor.currentApp().has_value();
  state_->setTone(counts ? TextTone::success : TextTone::secondary);
  if (!monitor.enabled()) return state_->setText(qtText(QM_TR("未在记录")));
  if (!counts) return state_->setText(qtText(monitor.state()));
  state_->setText(
      qtText(L10n::format("%@ · %@", {monitor.state(), ActivityText::name(*monitor.currentApp()).toStdString()})));
}

void ScreenTimeHeader::retranslate() {
  title_->setText(qtText(QM_TR("屏幕使用时间")));
  switchTitle_->setText(qtText(QM_TR("记录")));
  switch_->setAccessibleName(qtText(QM_TR("记录屏幕使用时间")));
}

}  // namespace quillmeter
