#include "ui/settings/AboutPage.h"

#include <array>
#include <string_view>

#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include "base/L10n.h"
#include "ui/AppActions.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/ProgramGlyph.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/SymbolView.h"
#include "update/AppUpdateChecker.h"
#include "update/model/AppVersion.h"

namespace quillmeter {

namespace {

constexpr int sideMargin = 16;
constexpr int topMargin = 11;
constexpr int glyphEdge = 72;

struct PrivacyFact {
  std::string_view symbol;
  std::string_view tint;
  std::string_view text;
};

constexpr std::array<PrivacyFact, 3> privacyFacts = {{
    {"gauge.with.dots.needle.50percent", "4C8DFF",
     QM_TR_NOOP("读取系统公开的数值：处理器、内存、磁盘、电量、网络与声音。")},
    {"doc.text.magnifyingglass", "FF6B5E",
     QM_TR_NOOP("从 Agent 日志中只读取用量计数和时间，从不读取提示词、代码或工具输出。")},
    {"eye.slash", "38B887", QM_TR_NOOP("任何数据都不会离开这台电脑；只有在你检查更新时才会联网。")},
}};

}  // namespace

AboutPage::AboutPage(const UiServices& services, QWidget* parent) : SettingsPage(services, parent) {
  setObjectName("settings.about");
  buildHead();
  buildUpdate();
  buildPrivacy();
  buildMore();
  column()->addStretch(1);
  AboutPage::retranslate();
}

void AboutPage::buildHead() {
  constexpr int gap = 16;
  auto* name = new FigureLabel(TextRole::title);
  name->setText(QStringLiteral("Quillmeter"));
  version_ = new FigureLabel(TextRole::body, TextTone::secondary);
  version_->setObjectName("settings.about.version");
  tagline_ = new Paragraph(TextRole::caption, TextTone::secondary);
  auto* names = new QVBoxLayout;
  names->setSpacing(2);
  names->addStretch();
  for (QWidget* line :
       {static_cast<QWidget*>(name), static_cast<QWidget*>(version_), static_cast<QWidget*>(tagline_)}) {
    names->addWidget(line);
  }
  names->addStretch();
  auto* head = new QHBoxLayout;
  head->setSpacing(gap);
  head->addWidget(new ProgramGlyph(glyphEdge, this));
  head->addLayout(names, 1);
  column()->addLayout(head);
}

void AboutPage::buildUpdate() {
  constexpr int gap = 12;
  update_ = new SettingsGroup(this);
  check_ = new QPushButton;
  check_->setObjectName("settings.about.check");
  connect(check_, &QPushButton::clicked, this, [this] { services().updates.check(); });
  updateRow_ = update_->addRow(check_);
  news_ = new QWidget;
  auto* layout = new QVBoxLayout(news_);
  layout->setContentsMargins(sideMargin, topMargin, sideMargin, topMargin);
  layout->setSpacing(gap);
  notes_ = new Paragraph(TextRole::body, TextTone::secondary);
  notes_->setObjectName("settings.about.notes");
  notes_->setTextFormat(Qt::PlainText);
  notes_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  notes_->setContextMenuPolicy(Qt::PreventContextMenu);  // the toolkit's has texts of its own language
  layout->addWidget(notes_);
  download_ = new QPushButton;
  download_->setObjectName("settings.about.download");
  download_->setDefault(true);
  connect(download_, &QPushButton::clicked, this, [this] { openDownload(); });
  layout->addWidget(download_, 0, Qt::AlignLeft);
  update_->addWidget(news_);
  column()->addWidget(update_);
}

void AboutPage::buildPrivacy() {
  constexpr int symbolPoints = 16;
  constexpr int gap = 12;
  privacy_ = new SettingsGroup(this);
  for (const PrivacyFact& fact : privacyFacts) {
    auto* line = new QWidget;
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(sideMargin, topMargin, sideMargin, topMargin);
    layout->setSpacing(gap);
    auto* symbol = new SymbolView(std::string(fact.symbol), std::string(fact.tint), symbolPoints);
    symbol->setHasGround(true);
    auto* text = new Paragraph;
    layout->addWidget(symbol, 0, Qt::AlignTop);
    layout->addWidget(text, 1, Qt::AlignVCenter);
    privacy_->addWidget(line);
    facts_.push_back(text);
  }
  column()->addWidget(privacy_);
}

void AboutPage::buildMore() {
  more_ = new SettingsGroup(this);
  onboarding_ = new QPushButton;
  onboarding_->setObjectName("settings.about.onboarding");
  connect(onboarding_, &QPushButton::clicked, this, [this] { services().actions.showOnboarding(); });
  onboardingRow_ = more_->addRow(onboarding_);
  licence_ = new FigureLabel(TextRole::body, TextTone::secondary);
  licenceRow_ = more_->addRow(licence_);
  column()->addWidget(more_);
}

void AboutPage::retranslate() {
  setPageTitle(qtText(QM_TR("关于")));
  const std::string version = AppVersion::current().diagnosticDisplay();
  version_->setText(qtText(L10n::format(QM_TR("版本 %@"), {version})));
  tagline_->setText(qtText(QM_TR("这台电脑的状态与 AI 编程助手的 Token 用量，一眼可见。")));
  update_->setTitle(qtText(QM_TR("更新")));
  check_->setText(qtText(QM_TR("检查更新")));
  download_->setText(qtText(QM_TR("下载新版本")));
  privacy_->setTitle(qtText(QM_TR("隐私")));
  for (std::size_t index = 0; index < facts_.size(); ++index) {
    facts_[index]->setText(qtText(L10n::string(privacyFacts[index].text)));
  }
  more_->setTitle(qtText(QM_TR("更多")));
  onboardingRow_->setTitle(qtText(QM_TR("欢迎引导")));
  onboarding_->setText(qtText(QM_TR("再看一次")));
  onboarding_->setAccessibleName(onboarding_->text());
  licenceRow_->setTitle(qtText(QM_TR("许可证")));
  licenceRow_->setSubtitle(QStringLiteral("© 2026 The Quillmeter authors"));
  licence_->setText(QStringLiteral("MIT"));
}

std::vector<Subscription> AboutPage::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().updates.onChange(std::move(changed)));
  return subscriptions;
}

void AboutPage::refresh() {
  const AppUpdateChecker& updates = services().updates;
  const auto& result = updates.result();
  const auto progress = updates.progressText();
  const bool isNewer = !progress && result && result->downloadURL();
  check_->setEnabled(!progress);
  if (progress) {
    updateRow_->setTitle(qtText(*progress));
    updateRow_->setSubtitle({});
  } else if (result) {
    updateRow_->setTitle(qtText(result->title()));
    updateRow_->setSubtitle(isNewer ? QString() : qtText(result->detail()));
  } else {
    updateRow_->setTitle(qtText(QM_TR("新版本")));
    updateRow_->setSubtitle(qtText(QM_TR("只在点击时检查，不会自动下载或安装。")));
  }
  check_->setAccessibleName(check_->text());
  news_->setVisible(isNewer);
  if (isNewer) {
    notes_->setText(qtText(result->detail()));
    notes_->setVisible(!notes_->text().isEmpty());
  }
}

// The address was checked with the manifest; nothing else is ever handed to the browser.
void AboutPage::openDownload() {
  const auto& result = services().updates.result();
  const auto address = result ? result->downloadURL() : std::nullopt;
  if (!address) return;
  const QUrl url(qtText(*address), QUrl::StrictMode);
  if (url.isValid() && url.scheme() == "https") QDesktopServices::openUrl(url);
}

}  // namespace quillmeter
