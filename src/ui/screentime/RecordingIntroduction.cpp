#include "ui/screentime/RecordingIntroduction.h"

#include <array>

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SymbolView.h"

namespace quillmeter {
namespace {

struct Fact {
  const char* symbol;
  const char* tint;
  const char* text;
};

constexpr std::array<Fact, 4> facts = {{
    {"clock", "4C8DFF", QM_TR_NOOP("只记录哪个应用在前台、用了多久；60 秒没有输入、锁屏或休眠时不计时。")},
    {"eye.slash", "A66BFF", QM_TR_NOOP("从不记录窗口标题、网址、按键或屏幕内容。")},
    {"internaldrive", "34C79A", QM_TR_NOOP("记录只保存在这台电脑的一个文件里，只有你能读取，不会上传。")},
    {"trash", "FF9F43", QM_TR_NOOP("最近 30 天之前的记录自动删除，也可以随时关闭或清除。")},
}};

constexpr int symbolPoints = 18;

}  // namespace

RecordingIntroduction::RecordingIntroduction(QWidget* parent) : Card(parent) {
  setObjectName("screenTime.introduction");
  lead_ = new Paragraph(TextRole::body, TextTone::secondary, this);
  content()->addWidget(lead_);
  content()->addSpacing(6);
  for (const Fact& fact : facts) {
    auto* symbol = new SymbolView(fact.symbol, fact.tint, symbolPoints, this);
    symbol->setHasGround(true);
    facts_.push_back(new Paragraph(TextRole::body, TextTone::primary, this));
    facts_.back()->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    auto* row = new QHBoxLayout;
    row->setSpacing(14);
    row->addWidget(symbol, 0, Qt::AlignVCenter);
    row->addWidget(facts_.back(), 1);
    content()->addLayout(row);
    content()->addSpacing(4);
  }
  begin_ = new QPushButton(this);
  begin_->setObjectName("screenTime.begin");
  begin_->setDefault(true);
  QObject::connect(begin_, &QPushButton::clicked, this, [this] {
    if (begun_) begun_();
  });
  content()->addSpacing(6);
  content()->addWidget(begin_, 0, Qt::AlignLeft);
  retranslate();
}

void RecordingIntroduction::setCanBegin(bool can) {
  begin_->setEnabled(can);
}

void RecordingIntroduction::retranslate() {
  setHeader("hourglass", "4C8DFF", qtText(QM_TR("看看时间用在了哪里")));
  lead_->setText(qtText(QM_TR("开启后，这里会显示每天和每周各应用的使用时间。默认关闭，由你决定。")));
  for (std::size_t index = 0; index < facts.size(); ++index)
    facts_[index]->setText(qtText(L10n::string(facts[index].text)));
  begin_->setText(qtText(QM_TR("开启记录")));
}

}  // namespace quillmeter
