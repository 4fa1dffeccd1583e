#include "platform/linux/Base64.h"

#include <array>
#include <cstdint>

namespace quillmeter {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t invalid = 0xFF;

constexpr std::array<std::uint8_t, 256> makeReverse() {
  std::array<std::uint8_t, 256> table{};
  table.fill(invalid);
  for (std::size_t i = 0; i < alphabet.size(); ++i)
    table[static_cast<std::uint8_t>(alphabet[i])] = static_cast<std::uint8_t>(i);
  return table;
}

constexpr auto reverse = makeReverse();

std::uint32_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

}  // namespace

std::string encodeBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = byteAt(bytes, i) << 16;
    if (count > 1) group |= byteAt(bytes, i + 1) << 8;
    if (count > 2) group |= byteAt(bytes, i + 2);
    text.push_back(alphabet[group >> 18]);
    text.push_back(alphabet[(group >> 12) & 63]);
    text.push_back(count > 1 ? alphabet[(group >> 6) & 63] : '=');
    text.push_back(count > 2 ? alphabet[group & 63] : '=');
  }
  return text;
}

std::optional<std::string> decodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (std::size_t i = 0; i < text.size(); i += 4) {
    std::size_t padding = 0;
    if (i + 4 == text.size()) padding = text[i + 3] != '=' ? 0 : text[i + 2] != '=' ? 1 : 2;
    std::uint32_t group = 0;
    for (std::size_t j = 0; j < 4; ++j) {
      const std::uint8_t digit = j < 4 - padding ? reverse[byteAt(text, i + j)] : std::uint8_t{0};
      if (digit == invalid) return std::nullopt;
      group = group << 6 | digit;
    }
    if ((padding == 1 && (group & 0xFF) != 0) || (padding == 2 && (group & 0xFFFF) != 0)) return std::nullopt;
    bytes.push_back(static_cast<char>(group >> 16));
    if (padding < 2) bytes.push_back(static_cast<char>(group >> 8 & 0xFF));
    if (padding < 1) bytes.push_back(static_cast<char>(group & 0xFF));
  }
  return bytes;
}

}  // namespace quillmeter
