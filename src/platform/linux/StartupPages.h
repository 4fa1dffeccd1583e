#pragma once

namespace quillmeter {

// Takes the pages of program text and constants out of this process's memory; those that are used again come back from
// the page cache one by one. A program that runs for days calls it once after its start, most of whose code (the
// dynamic linker's work, the command line, the first scan) never runs again. Pages that were written to are not
// touched. Any thread; takes about a millisecond.
void releaseStartupPages();

}  // namespace quillmeter
