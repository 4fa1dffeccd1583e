#pragma once

#include <functional>
#include <vector>

#include <QTreeView>

#include "base/Date.h"
#include "ui/dashboard/AgentRows.h"

namespace quillmeter {

class AgentTableModel;

// The agents with their state and figures, as high as its rows. A row is opened by a click or by Return. Where there is
// no room for all columns the least telling ones are left out.
class AgentTable final : public QTreeView {
 public:
  AgentTable(std::function<void(AgentLogProvider)> open, QWidget* parent);
  void setRows(std::vector<AgentRow> rows, Date now);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void fitColumns();
  void hover(int row);
  int wantedHeight() const;

  const std::function<void(AgentLogProvider)> open_;
  AgentTableModel* model_;
  int hovered_ = -1;
};

}  // namespace quillmeter
