#include "ui/system/FailureBanner.h"

#include <algorithm>

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <QWidget>

#include "base/L10n.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/Notice.h"

namespace quillmeter {
namespace {

constexpr double shownSeconds = 12;
constexpr int margin = 20;
constexpr int bannerWidth = 560;
constexpr double radius = 10;  // a notice's

// The message's opaque ground; follows the window's size.
class Banner final : public QWidget {
 public:
  explicit Banner(QWidget& window) : QWidget(&window), notice_(new Notice(this)) {
    setObjectName("failureBanner");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(notice_);
    window.installEventFilter(this);
  }

  void show(FailureBanner::Kind kind, const QString& text, TimerFactory& timers) {
    notice_->show(kind == FailureBanner::Kind::error ? Notice::Kind::error : Notice::Kind::information, text);
    notice_->setAction(qtText(QM_TR("知道了")), [this] { close(); });
    timer_ = timers.once(shownSeconds, [this] { close(); });
    place();
    QWidget::show();
    raise();
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Resize) place();
    return false;
  }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    Shapes::panel(painter, rect(), radius, ThemeColors::of(palette()).surface);
  }

 private:
  // Nameless from now on: a message that comes before it is gone gets a banner of its own.
  void close() {
    timer_.reset();
    setObjectName({});
    hide();
    deleteLater();
  }

  void place() {
    const QRect area = parentWidget()->rect();
    const int width = std::min(bannerWidth, area.width() - 2 * margin);
    const int height = std::max(layout()->heightForWidth(width), layout()->sizeHint().height());
    setGeometry((area.width() - width) / 2, area.height() - height - margin, width, height);
  }

  Notice* notice_;
  std::unique_ptr<Timer> timer_;
};

}  // namespace

void FailureBanner::show(QWidget& window, Kind kind, const QString& text, TimerFactory& timers) {
  auto* banner = dynamic_cast<Banner*>(window.findChild<QWidget*>("failureBanner", Qt::FindDirectChildrenOnly));
  if (banner == nullptr) banner = new Banner(window);
  banner->show(kind, text, timers);
}

}  // namespace quillmeter
