#include "agents/adapters/AgentArchiveReader.h"

#include <zstd.h>

#include <optional>
#include <random>

#include <gtest/gtest.h>

#include "agents/adapters/QMArchiveDecoder.h"
#include "agents/adapters/ZstdWriter.h"

namespace quillmeter {
namespace {

using test::zstdBomb;
using test::zstdFrame;

constexpr std::uint64_t noLimit = 1'073'741'824;

struct Outcome {
  std::optional<ArchiveReadError> error;
  std::string bytes;  // handed on before the end or the error
};

AgentArchiveReader::Source piecewise(std::string_view bytes, std::size_t size) {
  return [bytes, size]() mutable {
    const auto piece = bytes.substr(0, size);
    bytes.remove_prefix(piece.size());
    return std::optional(piece);
  };
}

Outcome read(std::string_view bytes, std::uint64_t limit = noLimit, bool compressed = true, std::size_t piece = 4096) {
  Outcome outcome;
  const auto result = AgentArchiveReader::read(piecewise(bytes, piece), compressed, limit,
                                               [&](std::string_view part) { outcome.bytes += part; });
  if (!result) outcome.error = result.error();
  return outcome;
}

std::string prose(std::size_t bytes) {
  std::mt19937 random(7);
  std::string text;
  while (text.size() < bytes) text += "line " + std::to_string(random()) + "\n";
  text.resize(bytes);
  return text;
}

std::string skippableFrame(std::string_view content) {
  std::string frame = {'\x50', '\x2a', '\x4d', '\x18', static_cast<char>(content.size()), 0, 0, 0};
  return frame.append(content);
}

TEST(AgentArchiveReader, aStreamIsReadWhateverItsPiecesFramesAndBufferBoundaries) {
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1}, AgentArchiveReader::outputBytes - 1, AgentArchiveReader::outputBytes,
        AgentArchiveReader::outputBytes + 1, std::size_t{300'000}}) {
    const std::string text = prose(size);
    const std::string stream = zstdFrame(text) + skippableFrame("ignored") + zstdFrame("") + zstdFrame(text);
    for (const std::size_t piece : {std::size_t{1}, std::size_t{3}, std::size_t{4096}, std::size_t{1'048'576}}) {
      const Outcome outcome = read(stream, noLimit, true, piece);
      EXPECT_EQ(outcome.error, std::nullopt) << size << " in pieces of " << piece;
      EXPECT_TRUE(outcome.bytes == text + text) << size << " in pieces of " << piece;
    }
  }
}

TEST(AgentArchiveReader, aStreamCutAnywhereInsideAFrameIsTruncated) {
  const std::string first = zstdFrame(prose(500));
  const std::string stream = first + zstdFrame(prose(700));
  for (std::size_t length = 0; length < stream.size(); ++length) {
    const auto error = read(std::string_view(stream).substr(0, length)).error;
    if (length == first.size()) {
      EXPECT_EQ(error, std::nullopt);
    } else {
      EXPECT_EQ(error, ArchiveReadError::truncated) << length;
    }
  }
}

TEST(AgentArchiveReader, whatIsNoZstdStreamIsInvalid) {
  EXPECT_EQ(read("{\"type\":\"message\"}\n").error, ArchiveReadError::invalid);
  EXPECT_EQ(read(zstdFrame(prose(500)) + "trailing garbage").error, ArchiveReadError::invalid);
  std::string damaged = zstdFrame(prose(5000));
  damaged.back() = static_cast<char>(damaged.back() ^ 1);  // the checksum
  EXPECT_EQ(read(damaged).error, ArchiveReadError::invalid);
  for (std::size_t i = 0; i + 1 < damaged.size(); i += 7) {
    std::string other = zstdFrame(prose(5000));
    other[i] = static_cast<char>(other[i] ^ 0x55);
    EXPECT_NE(read(other, 1'000'000).error, std::nullopt) << "byte " << i;
  }
}

TEST(AgentArchiveReader, theLimitIsKeptToTheByteAndNothingBeyondItIsHandedOn) {
  const std::string text = prose(200'000);
  for (const bool compressed : {true, false}) {
    const std::string stream = compressed ? zstdFrame(text) : text;
    EXPECT_EQ(read(stream, text.size(), compressed).error, std::nullopt);
    const Outcome beyond = read(stream, text.size() - 1, compressed);
    EXPECT_EQ(beyond.error, ArchiveReadError::tooLarge);
    EXPECT_LT(beyond.bytes.size(), text.size());
  }
}

TEST(AgentArchiveReader, aBombStopsAtItsLimit) {
  const std::string bomb = zstdBomb(std::uint64_t{1} << 30);
  ASSERT_LT(bomb.size(), 1'000'000U);
  constexpr std::uint64_t limit = 4'194'304;
  std::uint64_t seen = 0;
  const auto result = AgentArchiveReader::read(AgentArchiveReader::bytesSource(bomb), true, limit,
                                               [&](std::string_view part) { seen += part.size(); });
  EXPECT_EQ(result, tl::unexpected(ArchiveReadError::tooLarge));
  EXPECT_LE(seen, limit);
}

TEST(AgentArchiveReader, aFrameThatAsksForAGiantWindowIsRefused) {
  const std::string text = prose(100'000);
  EXPECT_EQ(read(zstdFrame(text, {.windowLog = QMArchiveDecoderMaximumWindowLog})).error, std::nullopt);
  EXPECT_EQ(read(zstdFrame(text, {.windowLog = QMArchiveDecoderMaximumWindowLog + 1})).error,
            ArchiveReadError::invalid);
  EXPECT_EQ(read(zstdFrame(text, {.level = 19})).error, std::nullopt);
}

TEST(AgentArchiveReader, aSourceThatFailsMakesTheStreamInvalid) {
  for (const bool compressed : {true, false}) {
    const auto result = AgentArchiveReader::read([] { return std::optional<std::string_view>(); }, compressed, noLimit,
                                                 [](std::string_view) { FAIL(); });
    EXPECT_EQ(result, tl::unexpected(ArchiveReadError::invalid));
  }
}

TEST(QMArchiveDecoder, countsWhatItTookAndGaveAndTellsTheEndOfAFrame) {
  const std::string frame = zstdFrame("hello");
  QMArchiveDecoderHandle handle = QMArchiveDecoderCreate();
  ASSERT_NE(handle, nullptr);
  char output[16];
  std::size_t consumed = 0;
  std::size_t produced = 0;
  int finished = -1;
  ASSERT_TRUE(
      QMArchiveDecoderProcess(handle, frame.data(), 4, &consumed, output, sizeof(output), &produced, &finished));
  EXPECT_EQ(consumed, 4U);
  EXPECT_EQ(produced, 0U);
  EXPECT_EQ(finished, 0);
  ASSERT_TRUE(QMArchiveDecoderProcess(handle, frame.data() + 4, frame.size() - 4, &consumed, output, sizeof(output),
                                      &produced, &finished));
  EXPECT_EQ(consumed, frame.size() - 4);
  EXPECT_EQ(std::string_view(output, produced), "hello");
  EXPECT_EQ(finished, 1);
  EXPECT_FALSE(QMArchiveDecoderProcess(handle, "not zstd", 8, &consumed, output, sizeof(output), &produced, &finished));
  EXPECT_EQ(finished, 0);
  QMArchiveDecoderDestroy(handle);
  QMArchiveDecoderDestroy(nullptr);
}

}  // namespace
}  // namespace quillmeter
