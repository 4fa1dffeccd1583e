#pragma once

#include <QWidget>

#include "agents/model/AgentActivitySession.h"

namespace quillmeter {

class FigureLabel;
class SymbolView;

// One active session: its agent, its name, its tokens and how long ago it was used, in whole minutes.
class SessionLine : public QWidget {
 public:
  explicit SessionLine(QWidget* parent);
  void show(const AgentActivitySession& session, Date now);

 private:
  SymbolView* symbol_;
  FigureLabel* agent_;
  FigureLabel* session_;
  FigureLabel* tokens_;
  FigureLabel* age_;
};

}  // namespace quillmeter
