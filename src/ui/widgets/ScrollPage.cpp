#include "ui/widgets/ScrollPage.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quillmeter {

ScrollPage::ScrollPage(int maximumWidth, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);

  auto* page = new QWidget;
  auto* held = new QWidget(page);
  held->setMaximumWidth(maximumWidth);
  column_ = new QVBoxLayout(held);
  column_->setContentsMargins(0, 0, 0, 0);
  auto* line = new QHBoxLayout(page);
  line->setContentsMargins(margin, margin, margin, margin);
  line->setSpacing(0);
  // The column takes what it may; only what is left is shared by the sides.
  constexpr int most = 1'000;
  line->addStretch(1);
  line->addWidget(held, most);
  line->addStretch(1);
  setWidget(page);

  // The toolkit follows the focus only within the page, not when it comes from outside.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (now != nullptr && now != this && widget()->isAncestorOf(now) &&
        window()->testAttribute(Qt::WA_KeyboardFocusChange))
      ensureWidgetVisible(now, 0, margin);
  });
}

}  // namespace quillmeter
