#pragma once

#include <QWidget>

class QVBoxLayout;

namespace quillmeter {

class Card;
class FigureLabel;
class Paragraph;

// One line of a form: title, an optional second line below it, a control at the end.
class SettingRow : public QWidget {
 public:
  SettingRow(QWidget* control, QWidget* parent = nullptr);
  // Also the control's accessible name.
  void setTitle(const QString& title);
  void setSubtitle(const QString& subtitle);
  QWidget* control() const { return control_; }

 private:
  QWidget* control_;
  Paragraph* title_ = nullptr;
  Paragraph* subtitle_ = nullptr;
};

// Lines of a form on one card, with separators between them and a title above.
class SettingsGroup : public QWidget {
 public:
  explicit SettingsGroup(QWidget* parent = nullptr);
  void setTitle(const QString& title);
  // Below the card, in secondary text.
  void setFootnote(const QString& text);
  SettingRow* addRow(QWidget* control);
  void addWidget(QWidget* widget);

 private:
  Paragraph* title_ = nullptr;
  Paragraph* footnote_ = nullptr;
  Card* card_ = nullptr;
  QVBoxLayout* rows_ = nullptr;
};

}  // namespace quillmeter
