#pragma once

#include <map>

#include <QString>

namespace quillmeter::test {

// Every text of the program: the Chinese one, which is its id, and the English one.
const std::map<QString, QString>& textCatalogue();

bool holdsChinese(const QString& text);

}  // namespace quillmeter::test
