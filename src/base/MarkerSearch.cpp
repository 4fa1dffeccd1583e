#include "base/MarkerSearch.h"

#include <cstring>
#include <utility>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace quillmeter {

namespace {

// How common a byte is in the agents' logs; only the order matters.
int commonness(char byte) {
  constexpr std::string_view byRarity =
      "~^`|@#$&;!?%<>JQXZKYVWUHBjqPGOMzDFLNI+=*R'STECA()[]{}/_xkv987654321Zbwy.gfpmu\\c-dlh:,0rsoian te\"";
  const std::size_t at = byRarity.find(byte);
  return at == std::string_view::npos ? 0 : static_cast<int>(at) + 1;
}

#if defined(__x86_64__)

// Every place p < places where text[p] and text[p + distance] are the two bytes. The tail of fewer than a vector's
// places is left to the caller by moving `from` there.
template <typename Verify>
std::size_t searchNarrow(const char* text, std::size_t& from, std::size_t places, std::size_t distance, char a, char b,
                         const Verify& verify) {
  const __m128i wantedA = _mm_set1_epi8(a);
  const __m128i wantedB = _mm_set1_epi8(b);
  for (; from + 16 <= places; from += 16) {
    const __m128i atA = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + from));
    const __m128i atB = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + from + distance));
    auto hits = static_cast<unsigned>(
        _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi8(atA, wantedA), _mm_cmpeq_epi8(atB, wantedB))));
    for (; hits != 0; hits &= hits - 1) {
      const std::size_t place = from + static_cast<std::size_t>(__builtin_ctz(hits));
      if (verify(place)) return place;
    }
  }
  return std::string_view::npos;
}

template <typename Verify>
[[gnu::target("avx2")]] std::size_t searchWide(const char* text, std::size_t& from, std::size_t places,
                                               std::size_t distance, char a, char b, const Verify& verify) {
  const __m256i wantedA = _mm256_set1_epi8(a);
  const __m256i wantedB = _mm256_set1_epi8(b);
  for (; from + 64 <= places; from += 64) {
    const char* at = text + from;
    const __m256i low = _mm256_and_si256(
        _mm256_cmpeq_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)), wantedA),
        _mm256_cmpeq_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + distance)), wantedB));
    const __m256i high = _mm256_and_si256(
        _mm256_cmpeq_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 32)), wantedA),
        _mm256_cmpeq_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 32 + distance)), wantedB));
    const __m256i either = _mm256_or_si256(low, high);
    if (_mm256_testz_si256(either, either) != 0) continue;
    auto hits = static_cast<unsigned long long>(static_cast<unsigned>(_mm256_movemask_epi8(low))) |
                static_cast<unsigned long long>(static_cast<unsigned>(_mm256_movemask_epi8(high))) << 32;
    for (; hits != 0; hits &= hits - 1) {
      const std::size_t place = from + static_cast<std::size_t>(__builtin_ctzll(hits));
      if (verify(place)) return place;
    }
  }
  return std::string_view::npos;
}

#endif

}  // namespace

MarkerSearch::MarkerSearch(std::string marker) : marker_(std::move(marker)) {
  for (std::size_t i = 1; i < marker_.size(); ++i) {
    if (commonness(marker_[i]) < commonness(marker_[first_])) first_ = i;
  }
  second_ = first_ == 0 && marker_.size() > 1 ? 1 : 0;
  for (std::size_t i = 0; i < marker_.size(); ++i) {
    if (i != first_ && commonness(marker_[i]) < commonness(marker_[second_])) second_ = i;
  }
  if (first_ > second_) std::swap(first_, second_);
#if defined(__x86_64__)
  wide_ = __builtin_cpu_supports("avx2") != 0;
#endif
}

std::size_t MarkerSearch::find(std::string_view text) const {
  const std::size_t length = marker_.size();
  if (text.size() < length || text.empty()) return std::string_view::npos;
  if (length == 0) return 0;
  std::size_t from = 0;
#if defined(__x86_64__)
  const std::size_t places = text.size() - length + 1;
  const char* shifted = text.data() + first_;
  const auto verify = [&](std::size_t place) { return std::memcmp(text.data() + place, marker_.data(), length) == 0; };
  const std::size_t distance = second_ - first_;
  std::size_t found = std::string_view::npos;
  if (wide_) found = searchWide(shifted, from, places, distance, marker_[first_], marker_[second_], verify);
  if (found == std::string_view::npos) {
    found = searchNarrow(shifted, from, places, distance, marker_[first_], marker_[second_], verify);
  }
  if (found != std::string_view::npos) return found;
#endif
  const void* rest = memmem(text.data() + from, text.size() - from, marker_.data(), length);
  return rest == nullptr ? std::string_view::npos
                         : static_cast<std::size_t>(static_cast<const char*>(rest) - text.data());
}

}  // namespace quillmeter
