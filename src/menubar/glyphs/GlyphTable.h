#pragma once

#include <span>
#include <string_view>

namespace quillmeter {

class GlyphCanvas;

// A symbol's name and what draws it.
struct GlyphEntry {
  std::string_view name;
  void (*draw)(GlyphCanvas& canvas);
};

// The glyphs by theme; each table stands in the file that draws its glyphs.
std::span<const GlyphEntry> machineGlyphs();
std::span<const GlyphEntry> natureGlyphs();
std::span<const GlyphEntry> networkGlyphs();
std::span<const GlyphEntry> audioGlyphs();
std::span<const GlyphEntry> agentGlyphs();
std::span<const GlyphEntry> interfaceGlyphs();

}  // namespace quillmeter
