#include "ui/dashboard/AgentTableModel.h"

#include <utility>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "ui/cards/AgentCardState.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

namespace {

const QString unknown = QStringLiteral("—");

QString metricText(const AgentTokenMetrics& metrics, int column) {
  const auto tokens = [](std::int64_t count) { return qtText(MetricFormatter::tokens(count)); };
  switch (column) {
    case AgentTableModel::total:
      return tokens(metrics.totalTokens);
    case AgentTableModel::input:
      return tokens(metrics.inputTokens);
    case AgentTableModel::output:
      return tokens(metrics.outputTokens);
    case AgentTableModel::cached:
      return tokens(metrics.cachedTokens);
    case AgentTableModel::sessions:
      return QString::number(metrics.sessionCount);
    default:
      break;
  }
  const auto rate = metrics.cacheHitRate();
  return rate ? qtText(MetricFormatter::percent(*rate)) : unknown;
}

}  // namespace

void AgentTableModel::setRows(std::vector<AgentRow> rows, Date now) {
  std::vector<QString> activity;
  for (const AgentRow& row : rows) {
    activity.push_back(row.lastActivity ? qtText(ageText(*row.lastActivity, now)) : unknown);
  }
  if (rows.size() != rows_.size()) {
    beginResetModel();
    rows_ = std::move(rows);
    activity_ = std::move(activity);
    endResetModel();
    return;
  }
  const std::vector<AgentRow> before = std::exchange(rows_, std::move(rows));
  const std::vector<QString> activityBefore = std::exchange(activity_, std::move(activity));
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i] == before[i] && activity_[i] == activityBefore[i]) continue;
    const int line = static_cast<int>(i);
    dataChanged(index(line, 0), index(line, columnCount_ - 1));
  }
}

void AgentTableModel::retranslate() {
  headerDataChanged(Qt::Horizontal, 0, columnCount_ - 1);
  if (!rows_.empty()) dataChanged(index(0, 0), index(rowCount() - 1, columnCount_ - 1));
}

int AgentTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int AgentTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnCount_;
}

QString AgentTableModel::text(const AgentRow& row, int column) const {
  if (column == name) return qtText(title(row.provider));
  if (column == lastActivity) return activity_[static_cast<std::size_t>(&row - rows_.data())];
  return row.metrics ? metricText(*row.metrics, column) : unknown;
}

QString AgentTableModel::accessibleText(const AgentRow& row, int column) const {
  const QString value = text(row, column);
  if (column == name) return QStringLiteral("%1, %2").arg(value, qtText(row.stateText()));
  return QStringLiteral("%1 %2").arg(headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), value);
}

QVariant AgentTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const AgentRow& shown = row(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return text(shown, index.column());
    case Qt::AccessibleTextRole:
      return accessibleText(shown, index.column());
    case Qt::ToolTipRole:
      return index.column() == name ? QVariant(qtText(shown.stateText())) : QVariant();
    case Qt::TextAlignmentRole:
      return QVariant((index.column() == name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant AgentTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole)
    return QVariant((section == name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
  switch (section) {
    case total:
      return qtText(QM_TR("总计"));
    case input:
      return qtText(QM_TR("输入"));
    case output:
      return qtText(QM_TR("输出"));
    case cached:
      return qtText(QM_TR("缓存"));
    case sessions:
      return qtText(QM_TR("会话"));
    case hitRate:
      return qtText(QM_TR("缓存命中"));
    case lastActivity:
      return qtText(QM_TR("最近活动"));
    default:
      return QStringLiteral("Agent");
  }
}

}  // namespace quillmeter
