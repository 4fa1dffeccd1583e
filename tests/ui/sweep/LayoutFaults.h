#pragma once

#include <string>
#include <vector>

#include <QWidget>

namespace quillmeter::test {

// What does not fit in a window as it is laid out now: texts with less room than they need, widgets that are cut off by
// what is around them, texts that lie over one another. Each with its place and text.
std::vector<std::string> layoutFaults(QWidget& window);

}  // namespace quillmeter::test
