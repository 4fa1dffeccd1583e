#pragma once

#include <string>

#include <QFont>
#include <QObject>

namespace quillmeter {

// The font of everything the program shows: the desktop's where one tells it, else the toolkit's, followed by fonts
// that know Simplified Chinese. When either changes, all open widgets get a QEvent::ApplicationFontChange (the toolkit
// sends it to windows alone): those with a font of their own take it anew. Owned by the theme; main thread.
class InterfaceFont final : public QObject {
 public:
  InterfaceFont();
  ~InterfaceFont() override;

  // As in AppearancePreferences. Nothing happens when the font stays the same.
  void follow(const std::string& fontName, double textScale);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void set();
  static void tell();

  QFont toolkit_;  // as the toolkit set it
  bool isSetting_ = false;
  std::string fontName_;
  double textScale_ = 1;
};

}  // namespace quillmeter
