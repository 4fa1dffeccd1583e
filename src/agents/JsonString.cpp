#include "agents/JsonString.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace quillmeter {

namespace {

// A vector as GCC and clang lower it for every processor.
constexpr std::ptrdiff_t vectorBytes = 16;
using ByteVector = unsigned char __attribute__((vector_size(vectorBytes)));
using WordVector = std::uint64_t __attribute__((vector_size(vectorBytes)));

// What ends the plain run of a string: quote, backslash or control character. The place of the first in the vector at
// `position`, vectorBytes when there is none.
std::ptrdiff_t plainRun(const char* position) {
  ByteVector bytes;
  std::memcpy(&bytes, position, sizeof(bytes));
  const auto hits = (bytes == '"') | (bytes == '\\') | (bytes < 0x20);
  const auto words = std::bit_cast<WordVector>(hits);
  if ((words[0] | words[1]) == 0) return vectorBytes;
  if constexpr (std::endian::native == std::endian::little) {
    return (words[0] != 0 ? std::countr_zero(words[0]) : 64 + std::countr_zero(words[1])) / 8;
  } else {
    return (words[0] != 0 ? std::countl_zero(words[0]) : 64 + std::countl_zero(words[1])) / 8;
  }
}

int hexValue(char byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

bool areHexDigits(const char* digits, const char* end) {
  if (end - digits < 4) return false;
  return hexValue(digits[0]) >= 0 && hexValue(digits[1]) >= 0 && hexValue(digits[2]) >= 0 && hexValue(digits[3]) >= 0;
}

// Behind the escape whose backslash is at `position`; null when it is none.
const char* behindEscape(const char* position, const char* end) {
  if (end - position < 2) return nullptr;
  switch (position[1]) {
    case '"':
    case '\\':
    case '/':
    case 'b':
    case 'f':
    case 'n':
    case 'r':
    case 't':
      return position + 2;
    case 'u':
      return areHexDigits(position + 2, end) ? position + 6 : nullptr;
    default:
      return nullptr;
  }
}

#if defined(__x86_64__)

// The bytes that an escape may have behind its backslash, by the halves of the byte: a byte is one of them when the
// sets of its lower and of its upper half have a bit in common.
constexpr char upper2 = 1, upper5 = 2, upper6 = 4, upper7 = 8;
constexpr std::array<char, 16> lowerSets = {0,
                                            0,
                                            upper2 | upper6 | upper7 /* " b r */,
                                            0,
                                            upper7 /* t */,
                                            upper7 /* u */,
                                            upper6 /* f */,
                                            0,
                                            0,
                                            0,
                                            0,
                                            0,
                                            upper5 /* \ */,
                                            0,
                                            upper6 /* n */,
                                            upper2 /* / */};
constexpr std::array<char, 16> upperSets = {0, 0, upper2, 0, 0, upper5, upper6, upper7, 0, 0, 0, 0, 0, 0, 0, 0};

// Which of 64 bytes are what, one bit a byte.
struct BlockBits {
  std::uint64_t quotes, backslashes, controls, escapable, us;
};

[[gnu::target("avx2")]] inline std::uint64_t bitsOf(__m256i low, __m256i high) {
  return std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(low))} |
         std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(high))} << 32;
}

[[gnu::target("avx2")]] inline __m256i mayFollowBackslash(__m256i bytes, __m256i lower, __m256i upper) {
  const __m256i upperHalves = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(0x0F));
  const __m256i common = _mm256_and_si256(_mm256_shuffle_epi8(lower, bytes), _mm256_shuffle_epi8(upper, upperHalves));
  return _mm256_cmpgt_epi8(common, _mm256_setzero_si256());
}

[[gnu::target("avx2")]] inline BlockBits classify(const char* position) {
  const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(position));
  const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(position + 32));
  const __m256i quote = _mm256_set1_epi8('"'), backslash = _mm256_set1_epi8('\\'), lastControl = _mm256_set1_epi8(0x1F),
                letterU = _mm256_set1_epi8('u');
  const __m256i lower =
      _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(lowerSets.data())));
  const __m256i upper =
      _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(upperSets.data())));
  return {bitsOf(_mm256_cmpeq_epi8(low, quote), _mm256_cmpeq_epi8(high, quote)),
          bitsOf(_mm256_cmpeq_epi8(low, backslash), _mm256_cmpeq_epi8(high, backslash)),
          bitsOf(_mm256_cmpeq_epi8(_mm256_min_epu8(low, lastControl), low),
                 _mm256_cmpeq_epi8(_mm256_min_epu8(high, lastControl), high)),
          bitsOf(mayFollowBackslash(low, lower, upper), mayFollowBackslash(high, lower, upper)),
          bitsOf(_mm256_cmpeq_epi8(low, letterU), _mm256_cmpeq_epi8(high, letterU))};
}

// Which bytes stand behind a backslash that is not itself escaped. `carry` is 1 when the byte before the block is such
// a backslash, and is set for the next block. Runs of backslashes are told apart by a subtraction: a run that begins at
// an even place borrows to its end on even places, one at an odd place on odd ones.
inline std::uint64_t escapedBits(std::uint64_t backslashes, std::uint64_t& carry) {
  constexpr std::uint64_t oddPlaces = 0xAAAA'AAAA'AAAA'AAAA;
  const std::uint64_t starts = backslashes & ~carry;
  const std::uint64_t codes = (((starts << 1) | oddPlaces) - starts) ^ oddPlaces;
  const std::uint64_t escaped = codes ^ (backslashes | carry);
  carry = (codes & backslashes) >> 63;
  return escaped;
}

// endOfJsonString in blocks of 64 bytes, without a branch for an escape, of which code in a string is full.
[[gnu::target("avx2")]] const char* endOfStringWide(const char* position, const char* end) {
  std::uint64_t carry = 0;
  for (; position < end; position += 64) {
    const BlockBits bits = classify(position);
    const std::uint64_t escaped = escapedBits(bits.backslashes, carry);
    const std::uint64_t stops = (bits.quotes & ~escaped) | bits.controls;
    const std::uint64_t before = stops == 0 ? ~std::uint64_t{0} : (stops & (~stops + 1)) - 1;
    const std::uint64_t escapes = escaped & before;
    if ((escapes & ~bits.escapable) != 0) return nullptr;
    for (std::uint64_t rest = escapes & bits.us; rest != 0; rest &= rest - 1) {
      if (!areHexDigits(position + std::countr_zero(rest) + 1, end)) return nullptr;
    }
    if (stops != 0) {
      const char* stop = position + std::countr_zero(stops);
      return stop < end && *stop == '"' ? stop : nullptr;
    }
  }
  return nullptr;
}

const bool hasWide = __builtin_cpu_supports("avx2") != 0;

#endif

// The four digits at `digits`, which were checked before.
std::uint32_t hexUnit(const char* digits) {
  std::uint32_t unit = 0;
  for (int i = 0; i < 4; ++i) unit = unit * 16 + static_cast<std::uint32_t>(hexValue(digits[i]));
  return unit;
}

void appendUtf8(std::string& out, std::uint32_t point) {
  const auto put = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (point < 0x80) return put(point);
  if (point < 0x800) {
    put(0xC0 | point >> 6);
  } else if (point < 0x10000) {
    put(0xE0 | point >> 12);
    put(0x80 | (point >> 6 & 0x3F));
  } else {
    put(0xF0 | point >> 18);
    put(0x80 | (point >> 12 & 0x3F));
    put(0x80 | (point >> 6 & 0x3F));
  }
  put(0x80 | (point & 0x3F));
}

char simpleEscape(char byte) {
  switch (byte) {
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return byte;
  }
}

}  // namespace

const char* endOfJsonStringPortable(const char* position, const char* end) {
  while (position < end) {
    const std::ptrdiff_t run = plainRun(position);
    position += run;
    if (run == vectorBytes) continue;
    if (position >= end) return nullptr;
    if (*position == '"') return position;
    if (*position != '\\') return nullptr;
    position = behindEscape(position, end);
    if (position == nullptr) return nullptr;
  }
  return nullptr;
}

const char* endOfJsonString(const char* position, const char* end) {
  // Most strings are keys and ids: one or two vectors.
  for (int probe = 0; probe < 3 && position < end; ++probe) {
    const std::ptrdiff_t run = plainRun(position);
    position += run;
    if (run == vectorBytes) continue;
    if (position < end && *position == '"') return position;
    break;
  }
#if defined(__x86_64__)
  if (hasWide) return endOfStringWide(position, end);
#endif
  return endOfJsonStringPortable(position, end);
}

std::string_view unescapeJson(std::string_view raw, std::string& buffer) {
  std::size_t escape = raw.find('\\');
  if (escape == std::string_view::npos) return raw;
  buffer.clear();
  std::size_t copied = 0;
  while (escape != std::string_view::npos) {
    buffer.append(raw, copied, escape - copied);
    const char kind = raw[escape + 1];
    copied = escape + 2;
    if (kind != 'u') {
      buffer.push_back(simpleEscape(kind));
    } else {
      std::uint32_t point = hexUnit(raw.data() + copied);
      copied += 4;
      const bool pairFollows = raw.size() - copied >= 6 && raw[copied] == '\\' && raw[copied + 1] == 'u';
      if (point >= 0xD800 && point < 0xDC00 && pairFollows) {
        const std::uint32_t low = hexUnit(raw.data() + copied + 2);
        if (low >= 0xDC00 && low < 0xE000) {
          point = 0x10000 + ((point - 0xD800) << 10) + (low - 0xDC00);
          copied += 6;
        }
      }
      appendUtf8(buffer, point);
    }
    escape = raw.find('\\', copied);
  }
  buffer.append(raw, copied);
  return buffer;
}

}  // namespace quillmeter
