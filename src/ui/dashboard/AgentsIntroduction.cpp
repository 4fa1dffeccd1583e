#include "ui/dashboard/AgentsIntroduction.h"

#include <QEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "preferences/MonitorComponentKind.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {

AgentsIntroduction::AgentsIntroduction(std::function<void()> act, QWidget* parent)
    : Card(parent),
      text_(new Paragraph(TextRole::body, TextTone::primary, this)),
      promise_(new Paragraph(TextRole::caption, TextTone::secondary, this)),
      button_(new QPushButton(this)) {
  setObjectName(QStringLiteral("dashboard.agents.introduction"));
  text_->setObjectName(QStringLiteral("dashboard.agents.introduction.text"));
  button_->setObjectName(QStringLiteral("dashboard.agents.introduction.connect"));
  button_->setDefault(true);
  connect(button_, &QPushButton::clicked, this, [act = std::move(act)] { act(); });
  content()->addWidget(text_);
  content()->addWidget(promise_);
  content()->addSpacing(4);
  content()->addWidget(button_, 0, Qt::AlignLeft);
  retranslate();
}

void AgentsIntroduction::setFound(const std::string& names) {
  if (names == found_) return;
  found_ = names;
  retranslate();
}

void AgentsIntroduction::retranslate() {
  setHeader(std::string(symbol(MonitorComponentKind::agentTokens)),
            std::string(quillmeter::tint(MonitorComponentKind::agentTokens)), qtText(QM_TR("还没有连接 Agent")));
  if (found_.empty()) {
    text_->setText(qtText(QM_TR("在这台电脑上没有找到可以连接的 Agent。日志在别处时，可以在设置中选择文件夹。")));
    button_->setText(qtText(QM_TR("打开设置")));
  } else {
    text_->setText(qtText(
        L10n::format(QM_TR("在这台电脑上找到 %@。连接日志文件夹后，这里显示 Token 用量、会话和缓存命中。"), {found_})));
    button_->setText(qtText(QM_TR("连接 Agent")));
  }
  promise_->setText(qtText(QM_TR("只读取用量计数和时间，数据不会离开这台电脑。")));
}

void AgentsIntroduction::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) retranslate();
  Card::changeEvent(event);
}

}  // namespace quillmeter
