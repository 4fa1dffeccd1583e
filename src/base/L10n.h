#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace quillmeter {

// Texts of the interface. The Chinese text is the message id: a lookup that knows it answers the text of the selected
// language; without one the id itself is the text. Main thread, but for string(), which any thread may call.
namespace L10n {

// Answers the text for an id, or an empty string when the catalogue lacks it (then the id is shown).
using Lookup = std::function<std::string(std::string_view id)>;

// Installs the lookup of the selected language; an empty function returns to the ids.
void install(Lookup lookup);
std::string string(std::string_view id);

// Fills the placeholders of a localised text: "%@" and "%d" take the arguments in order, "%1$@" takes the first, "%%"
// is a percent sign. A placeholder without argument stays as it stands.
std::string format(std::string_view text, std::initializer_list<std::string_view> arguments);

}  // namespace L10n

}  // namespace quillmeter

// Marks a text for the catalogue and looks it up: QM_TR("正在采样"). The argument is a string literal.
#define QM_TR(id) (::quillmeter::L10n::string(id))

// Marks a text for the catalogue where it stands in a table; L10n::string() looks it up when it is shown.
#define QM_TR_NOOP(id) (id)
