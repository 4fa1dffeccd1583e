#pragma once

#include <optional>
#include <span>
#include <string>

#include <QWidget>

#include "ui/cards/MonitorCard.h"

class QBoxLayout;

namespace quillmeter {

class FactList;
class FigureLabel;
class LevelBar;
class RingGauge;
class Sparkline;

// What the cards of a fraction have in common: the figure, its course or its level, and facts beside them. Wide, the
// figure stands in a ring; compact, there is no room for facts.
class GaugeBody : public QWidget {
 public:
  enum class Graphic { history, level };
  GaugeBody(CardForm form, Graphic graphic, const QString& objectName, QWidget* parent);

  void setTint(const std::string& hex);
  // What the figure measures, for accessibility.
  void setSubject(const QString& subject);
  // Absent shows `text` and an empty gauge.
  void setFraction(std::optional<double> fraction, const QString& text);
  // Whether there is anything to measure; without it only the remark is shown, but for a ring, which stays empty.
  void setMeasurable(bool isMeasurable);
  void setHistory(std::span<const double> values);
  // Makes room for something else.
  void setHistoryShown(bool isShown);
  // A short remark beside the level; the widest one that comes is not known, so it may be elided.
  void setNote(const QString& note);
  // A small sign beside the figure.
  void setMark(QWidget* mark);
  // Null in the compact form.
  FactList* facts() const { return facts_; }

 private:
  void buildWide(Graphic graphic);
  void buildRegular(Graphic graphic);
  void buildCompact(Graphic graphic);
  void describe();

  QString subject_;
  QString text_;
  RingGauge* ring_ = nullptr;
  FigureLabel* figure_ = nullptr;
  QBoxLayout* markPlace_ = nullptr;
  FigureLabel* note_ = nullptr;
  LevelBar* level_ = nullptr;
  Sparkline* history_ = nullptr;
  FactList* facts_ = nullptr;
};

}  // namespace quillmeter
