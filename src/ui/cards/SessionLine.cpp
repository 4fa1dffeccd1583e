#include "ui/cards/SessionLine.h"

#include <QHBoxLayout>

#include "access/model/AgentLogProvider.h"
#include "core/model/MetricFormatter.h"
#include "ui/cards/AgentCardState.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {

namespace {

constexpr int symbolPoints = 16;

}  // namespace

SessionLine::SessionLine(QWidget* parent)
    : QWidget(parent),
      symbol_(new SymbolView("sparkles", "", symbolPoints, this)),
      agent_(new FigureLabel(TextRole::body, TextTone::primary, this)),
      session_(new FigureLabel(TextRole::caption, TextTone::tertiary, this)),
      tokens_(new FigureLabel(TextRole::strong, TextTone::primary, this)),
      age_(new FigureLabel(TextRole::caption, TextTone::secondary, this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  row->addWidget(symbol_);
  row->addWidget(agent_);
  row->addWidget(session_, 1);
  row->addWidget(tokens_);
  row->addWidget(age_);
  tokens_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  age_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void SessionLine::show(const AgentActivitySession& session, Date now) {
  const auto provider = agentLogProviderFromRawValue(session.providerID);
  symbol_->setSymbol(provider ? std::string(symbol(*provider)) : "sparkles");
  agent_->setText(qtText(provider ? title(*provider) : session.providerID));
  session_->setText(qtText(session.sessionID));
  tokens_->setText(qtText(MetricFormatter::tokens(session.totalTokens)));
  age_->setText(qtText(ageText(session.lastActivity, now)));
  age_->setWidestText(qtText(MetricFormatter::relative(Date{}, Date::fromWholeSeconds(240))));
  WidgetAccessibility::setName(*this,
                               QStringLiteral("%1 %2 Token %3").arg(agent_->text(), tokens_->text(), age_->text()));
  setVisible(true);
}

}  // namespace quillmeter
