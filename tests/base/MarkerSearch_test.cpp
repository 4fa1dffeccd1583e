#include "base/MarkerSearch.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

namespace quillmeter {
namespace {

// Texts of few letters are full of near misses; their exact size on the heap shows a read outside to the address
// sanitizer.
TEST(MarkerSearch, agreesWithThePlainSearchOnNearMisses) {
  std::mt19937 random(7);
  for (int round = 0; round < 20'000; ++round) {
    std::string marker(random() % 6, 'a');
    for (char& c : marker) c = "ab\"_"[random() % 4];
    const std::size_t size = random() % 300;
    const std::unique_ptr<char[]> text(new char[size]);
    for (std::size_t i = 0; i < size; ++i) text[i] = "ab\"_"[random() % 4];
    const std::string_view view(text.get(), size);
    const std::size_t expected = marker.empty() && view.empty() ? std::string_view::npos : view.find(marker);
    ASSERT_EQ(MarkerSearch(marker).find(view), expected) << marker << " in " << view;
  }
}

TEST(MarkerSearch, findsAMarkerAtEveryPlaceOfABlock) {
  const MarkerSearch search("\"assistant\"");
  for (std::size_t at = 0; at < 300; ++at) {
    std::string text(at, '"');
    text += "\"assistant\"";
    EXPECT_EQ(search.find(text), at);
    text.pop_back();
    EXPECT_EQ(search.find(text), std::string::npos);
    text += "\"" + std::string(300, '\0');
    EXPECT_EQ(search.find(text), at);
  }
}

}  // namespace
}  // namespace quillmeter
