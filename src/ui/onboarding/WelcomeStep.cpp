#include "ui/onboarding/WelcomeStep.h"

#include <array>
#include <string>
#include <utility>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "preferences/AppLanguage.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/ProgramGlyph.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SymbolView.h"

namespace quillmeter {
namespace {

struct Feature {
  const char* symbol;
  const char* tint;
  const char* text;
};

constexpr std::array<Feature, 3> features = {{
    {"cpu", "4C8DFF", QM_TR_NOOP("处理器、内存、磁盘、电量、网络与声音，一眼可见，占用极低。")},
    {"sparkles", "A66BFF", QM_TR_NOOP("Codex、Claude Code 等八个本地 Agent 的 Token 用量与额度。")},
    {"internaldrive", "34C79A", QM_TR_NOOP("全部在这台电脑上读取和计算，只读用量计数和时间，不上传。")},
}};

constexpr int symbolPoints = 20;
constexpr int glyphEdge = 72;

}  // namespace

WelcomeStep::WelcomeStep(const UiServices& services, QWidget* parent) : OnboardingStep(services, parent) {
  setObjectName("onboarding.welcome");
  setEmblem(new ProgramGlyph(glyphEdge, this));
  content()->addStretch(1);
  buildFeatures();
  content()->addStretch(2);
  buildLanguage();
  content()->addStretch(1);
  WelcomeStep::retranslate();
}

void WelcomeStep::buildFeatures() {
  constexpr int sideMargin = 36;
  for (const Feature& feature : features) {
    auto* symbol = new SymbolView(feature.symbol, feature.tint, symbolPoints, this);
    symbol->setHasGround(true);
    features_.push_back(new Paragraph(TextRole::body, TextTone::primary, this));
    features_.back()->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(sideMargin, 2, sideMargin, 2);
    row->setSpacing(16);
    row->addWidget(symbol, 0, Qt::AlignVCenter);
    row->addWidget(features_.back(), 1);
    content()->addLayout(row);
  }
}

void WelcomeStep::buildLanguage() {
  language_ = new SegmentedControl(this);
  language_->setObjectName("onboarding.language");
  language_->setHandler([this](const std::string& id) { store(SettingsKeys::appLanguage.key, id); });
  content()->addWidget(language_, 0, Qt::AlignHCenter);
}

void WelcomeStep::refresh() {
  language_->setChosen(std::string(rawValue(selectedAppLanguage(services().preferences))));
}

void WelcomeStep::retranslate() {
  setHeading(qtText(QM_TR("欢迎使用 Quillmeter")), qtText(QM_TR("电脑与 Agent 的状态，安静地待在系统托盘里。")));
  for (std::size_t index = 0; index < features.size(); ++index)
    features_[index]->setText(qtText(L10n::string(features[index].text)));
  // Each language in its own words, so that everybody finds it.
  language_->setSegments({{std::string(rawValue(AppLanguage::system)), qtText(QM_TR("跟随系统"))},
                          {std::string(rawValue(AppLanguage::simplifiedChinese)), QStringLiteral("简体中文")},
                          {std::string(rawValue(AppLanguage::english)), QStringLiteral("English")}});
  language_->setAccessibleName(qtText(QM_TR("语言")));
  refresh();
}

QWidget* WelcomeStep::firstControl() const {
  return language_;
}

std::vector<Subscription> WelcomeStep::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().preferences.onChange(
      [changed = std::move(changed)](const std::vector<std::string>&, PreferenceChangeOrigin) { changed(); }));
  return subscriptions;
}

}  // namespace quillmeter
