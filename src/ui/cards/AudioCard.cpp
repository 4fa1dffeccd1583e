#include "ui/cards/AudioCard.h"

#include <QAbstractItemView>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "ui/cards/HardwareSlider.h"
#include "ui/theme/QtText.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/Chooser.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

namespace {

constexpr int middle = 50;

std::string sideText(int balance) {
  if (balance == middle) return QM_TR("居中");
  return balance < middle ? QM_TR("偏左") : QM_TR("偏右");
}

}  // namespace

AudioCard::AudioCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent)
    : MonitorCard(MonitorComponentKind::audio, size, placement, services, parent) {
  buildDevice();
  buildVolume();
  if (form() != CardForm::compact) buildBalance();
  message_ = new Paragraph(TextRole::caption, TextTone::secondary, this);
  name(message_, "message");
  error_ = new Paragraph(TextRole::caption, TextTone::danger, this);
  name(error_, "error");
  arrange();
}

void AudioCard::buildDevice() {
  devices_ = new Chooser(this);
  name(devices_, "devices");
  devices_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  devices_->setMinimumContentsLength(4);
  devices_->setHandler([this](const std::string& id) { chooseOutput(id); });
}

void AudioCard::buildVolume() {
  QuickStatusMonitor& quick = services().quickStatus;
  mute_ = new SymbolButton("speaker.wave.2.fill", this);
  name(mute_, "mute");
  connect(mute_, &SymbolButton::clicked, this, [&quick] { quick.toggleMute(); });
  volume_ = new HardwareSlider(services().timers, this);
  name(volume_, "volume");
  volume_->setSend([&quick](double value) { quick.setVolume(value); });
  connect(volume_, &QSlider::valueChanged, this, [this] { showSliderTexts(); });
  volumeText_ = new FigureLabel(TextRole::body, TextTone::secondary, this);
  volumeText_->setWidestText(QStringLiteral("100%"));
  volumeText_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  name(volumeText_, "volumeText");
}

void AudioCard::buildBalance() {
  balanceLine_ = new QWidget(this);
  balanceLabel_ = new FigureLabel(TextRole::body, TextTone::secondary, balanceLine_);
  balance_ = new HardwareSlider(services().timers, balanceLine_);
  balance_->setDetent(0.5);
  name(balance_, "balance");
  connect(balance_, &QSlider::valueChanged, this, [this] { showSliderTexts(); });
  balanceText_ = new FigureLabel(TextRole::body, TextTone::secondary, balanceLine_);
  balanceText_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  name(balanceText_, "balanceText");
  auto* line = new QHBoxLayout(balanceLine_);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(8);
  line->addWidget(balanceLabel_);
  line->addWidget(balance_, 1);
  line->addWidget(balanceText_);
}

void AudioCard::arrange() {
  auto* volume = new QHBoxLayout;
  volume->setSpacing(8);
  volume->addWidget(mute_);
  volume->addWidget(volume_, 1);
  volume->addWidget(volumeText_);
  content()->setSpacing(form() == CardForm::compact ? 6 : 8);
  content()->addWidget(devices_);
  if (form() == CardForm::wide) {
    auto* sliders = new QHBoxLayout;
    sliders->setSpacing(28);
    sliders->addLayout(volume, 1);
    sliders->addWidget(balanceLine_, 1);
    content()->addLayout(sliders);
  } else {
    content()->addLayout(volume);
    if (balanceLine_ != nullptr) content()->addWidget(balanceLine_);
  }
  content()->addWidget(message_);
  content()->addWidget(error_);
  content()->addStretch();
}

void AudioCard::retranslate() {
  devices_->setAccessibleName(qtText(QM_TR("声音输出")));
  volume_->setAccessibleName(qtText(QM_TR("音量")));
  if (balance_ == nullptr) return;
  balance_->setAccessibleName(qtText(QM_TR("声道平衡")));
  balanceLabel_->setText(qtText(QM_TR("声道平衡")));
  // The widest of the three keeps its place.
  QString widest;
  for (const int side : {0, middle, 2 * middle}) {
    const QString text = qtText(sideText(side));
    if (text.size() > widest.size()) widest = text;
  }
  balanceText_->setWidestText(widest);
}

void AudioCard::chooseOutput(const std::string& id) {
  QuickStatusMonitor& monitor = services().quickStatus;
  for (const QuickAudioDevice& device : monitor.snapshot().outputs) {
    if (std::to_string(device.id) != id || monitor.snapshot().output == device) continue;
    leaving_ = monitor.snapshot().output;
    return monitor.selectOutput(device.id);
  }
}

void AudioCard::refresh() {
  const QuickStatusSnapshot& quick = services().quickStatus.snapshot();
  showDevices(quick);
  showVolume(quick);
  showBalance(quick);
  showMessages(quick);
  showSliderTexts();
  tintSliders();
}

// The header shows what kind of device it is. An open list is left alone: it would close under the user's hand.
void AudioCard::showDevices(const QuickStatusSnapshot& quick) {
  const std::string_view shown = quick.output ? quick.output->symbol() : symbol(kind());
  setHeader(std::string(shown), std::string(quillmeter::tint(kind())), qtText(title(kind())));
  if (devices_->view()->isVisible()) return;
  std::vector<Chooser::Choice> choices;
  for (const QuickAudioDevice& device : quick.outputs)
    choices.push_back({std::to_string(device.id), qtText(device.name)});
  devices_->setVisible(!choices.empty());
  devices_->setChoices(std::move(choices));
  // What the user chose stays in the field until it has its effect or is refused.
  const QuickStatusMonitor& monitor = services().quickStatus;
  const bool isRefused = !monitor.isChanging() && monitor.error();
  if (quick.output != leaving_ || isRefused) leaving_.reset();
  if (!leaving_) devices_->setChosen(quick.output ? std::to_string(quick.output->id) : std::string());
  if (devices_->toolTip() != devices_->currentText()) devices_->setToolTip(devices_->currentText());
}

void AudioCard::showVolume(const QuickStatusSnapshot& quick) {
  const QuickStatusMonitor& monitor = services().quickStatus;
  const bool isMuted = quick.muted.value_or(false);
  mute_->setSymbol(isMuted ? "speaker.slash.fill" : "speaker.wave.2.fill");
  mute_->setDescription(qtText(isMuted ? QM_TR("取消静音") : QM_TR("静音")));
  mute_->setEnabled(quick.canSetMute);
  mute_->setVisible(quick.output.has_value());
  volume_->setVisible(quick.output && quick.volume);
  volume_->setEnabled(quick.canSetVolume);
  volume_->showHardware(quick.volume, monitor.isChanging(), monitor.error().has_value());
  volumeText_->setVisible(quick.output.has_value());
}

void AudioCard::showBalance(const QuickStatusSnapshot& quick) {
  if (balance_ == nullptr) return;
  QuickStatusMonitor& monitor = services().quickStatus;
  const std::optional<std::uint32_t> device = quick.output ? std::optional(quick.output->id) : std::nullopt;
  if (device != balancedDevice_) {
    balancedDevice_ = device;
    balance_->setSend([&monitor, device](double value) {
      if (device) monitor.setBalance(value, *device);
    });
  }
  balanceLine_->setVisible(device && quick.balance);
  balance_->setEnabled(quick.canSetBalance);
  balance_->showHardware(quick.balance, monitor.isChanging(), monitor.error().has_value());
}

void AudioCard::showMessages(const QuickStatusSnapshot& quick) {
  std::string message;
  if (!quick.output) {
    message = quick.connection == QuickConnection::checking ? QM_TR("正在采样") : QM_TR("没有声音输出设备");
  } else if (!quick.canSetVolume) {
    message = QM_TR("此设备的音量由硬件控制。");
  } else if (!quick.balance && form() != CardForm::compact) {
    message = QM_TR("此设备不支持声道平衡");
  }
  if (message_->text() != qtText(message)) message_->setText(qtText(message));
  message_->setVisible(!message.empty());
  const std::string error = services().quickStatus.error().value_or("");
  if (error_->text() != qtText(error)) error_->setText(qtText(error));
  error_->setVisible(!error.empty());
}

// They follow the handle, not the hardware.
void AudioCard::showSliderTexts() {
  const QuickStatusSnapshot& quick = services().quickStatus.snapshot();
  volumeText_->setText(quick.muted.value_or(false) ? qtText(QM_TR("已静音"))
                       : quick.volume              ? qtText(MetricFormatter::percent(volume_->value() / 100.0))
                                                   : QStringLiteral("—"));
  if (balanceText_ != nullptr) balanceText_->setText(qtText(sideText(balance_->value())));
}

// The style fills a slider in the palette's highlight colour.
void AudioCard::tintSliders() {
  const QColor color = ThemeColors::of(palette()).tint(quillmeter::tint(kind()));
  for (HardwareSlider* slider : {volume_, balance_}) {
    if (slider == nullptr || slider->palette().color(QPalette::Highlight) == color) continue;
    QPalette tinted = slider->palette();
    tinted.setColor(QPalette::Highlight, color);
    slider->setPalette(tinted);
  }
}

void AudioCard::hideEvent(QHideEvent* event) {
  MonitorCard::hideEvent(event);
  leaving_.reset();
}

std::vector<Subscription> AudioCard::subscribe(std::function<void()> changed) {
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().quickStatus.onChange(std::move(changed)));
  return subscriptions;
}

}  // namespace quillmeter
