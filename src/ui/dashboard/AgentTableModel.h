#pragma once

#include <vector>

#include <QAbstractTableModel>

#include "base/Date.h"
#include "ui/dashboard/AgentRows.h"

namespace quillmeter {

// The agents' rows as a table.
class AgentTableModel final : public QAbstractTableModel {
 public:
  enum Column { name, total, input, output, cached, sessions, hitRate, lastActivity, columnCount_ };

  explicit AgentTableModel(QObject* parent) : QAbstractTableModel(parent) {}
  // Tells the views only of rows that differ.
  void setRows(std::vector<AgentRow> rows, Date now);
  void retranslate();
  const AgentRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString text(const AgentRow& row, int column) const;
  QString accessibleText(const AgentRow& row, int column) const;

  std::vector<AgentRow> rows_;
  std::vector<QString> activity_;  // of each row, as it is shown
};

}  // namespace quillmeter
