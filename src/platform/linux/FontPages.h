#pragma once

namespace quillmeter {

// Takes the pages of font files out of this process's memory. The toolkit keeps each font mapped from its first use on,
// a large one with megabytes of glyphs; glyphs that are drawn again come back from the page cache. For a program that
// goes on without windows. Only on the thread that draws text: no other maps or unmaps fonts. Less than a millisecond.
void releaseFontPages();

}  // namespace quillmeter
