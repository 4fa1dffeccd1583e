#include "ui/cards/MemoryCard.h"

#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/MetricFormatter.h"
#include "ui/cards/FactList.h"
#include "ui/cards/GaugeBody.h"
#include "ui/cards/SweepOverlay.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

namespace {

constexpr int headerHeight = 28;

}  // namespace

MemoryCard::MemoryCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services,
                       QWidget* parent)
    : MonitorCard(MonitorComponentKind::memory, size, placement, services, parent),
      body_(new GaugeBody(form(), GaugeBody::Graphic::history, objectName(), this)),
      clean_(new SymbolButton("sparkle", this)),
      message_(new Paragraph(TextRole::caption, TextTone::secondary, this)),
      sweep_(new SweepOverlay(std::string(quillmeter::tint(kind())), Shapes::cardRadius, this)) {
  body_->setTint(std::string(quillmeter::tint(kind())));
  name(clean_, "clean");
  name(message_, "message");
  name(sweep_, "sweep");
  message_->hide();
  clean_->setFixedHeight(headerHeight);
  addHeaderControl(clean_);
  content()->addWidget(body_, 1);
  content()->addWidget(message_);
  if (FactList* facts = body_->facts()) {
    app_ = facts->add(QStringLiteral("card.memory.app"));
    wired_ = facts->add(QStringLiteral("card.memory.wired"));
    compressed_ = facts->add(QStringLiteral("card.memory.compressed"));
  }
  connect(clean_, &SymbolButton::clicked, this, [this] { this->services().store.cleanMemory(); });
}

void MemoryCard::retranslate() {
  body_->setSubject(qtText(title(kind())));
  clean_->setDescription(qtText(QM_TR("清理内存")));
  if (form() == CardForm::wide) clean_->setText(qtText(QM_TR("清理内存")));
  if (FactList* facts = body_->facts()) {
    facts->setLabel(app_, qtText(QM_TR("应用内存")));
    facts->setLabel(wired_, qtText(QM_TR("固定内存")));
    facts->setLabel(compressed_, qtText(QM_TR("压缩内存")));
  }
}

void MemoryCard::refresh() {
  const SystemSnapshot& system = services().store.system();
  body_->setFraction(system.memoryUsage, qtText(MetricFormatter::percent(system.memoryUsage)));
  body_->setHistory(services().store.memoryHistory().values());
  if (FactList* facts = body_->facts()) {
    facts->setValue(app_, qtText(system.memoryApp));
    facts->setValue(wired_, qtText(system.memoryWired));
    facts->setValue(compressed_, qtText(system.memoryCompressed));
  }
  showCleanup();
}

void MemoryCard::showCleanup() {
  const MonitorStore& store = services().store;
  const bool isCleaning = store.isCleaningMemory();
  const std::string result = isCleaning ? QM_TR("正在清理内存…") : store.memoryCleanupMessage().value_or("");
  sawCleanup_ = sawCleanup_ || isCleaning;
  // Disabled it would give its focus away, which a second press does not deserve.
  clean_->setEnabled(!isCleaning || clean_->hasFocus());
  const bool isCompact = form() == CardForm::compact;
  const std::string message = result.empty() ? QM_TR("只清理本应用的缓存") : result;
  if (message_->text() != qtText(message)) message_->setText(qtText(message));
  message_->setVisible(!isCompact || sawCleanup_);
  if (isCompact) body_->setHistoryShown(!sawCleanup_);
  sweep_->setActive(isCleaning);
}

void MemoryCard::hideEvent(QHideEvent* event) {
  MonitorCard::hideEvent(event);
  sawCleanup_ = false;
}

std::vector<Subscription> MemoryCard::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().store.onSystemChange(changed));
  subscriptions.push_back(services().store.onActivityChange(std::move(changed)));
  return subscriptions;
}

}  // namespace quillmeter
