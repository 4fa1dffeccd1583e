#include "agents/CodexTail.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace quillmeter {

namespace {

constexpr std::string_view marker = "\"token_count\"";
constexpr std::int64_t firstChunkBytes = 65'536;  // holds the last record of most files
constexpr std::int64_t chunkBytes = 262'144;
constexpr auto overlapBytes =
    static_cast<std::int64_t>(marker.size()) - 1;  // a marker may begin in one chunk and end in the next
constexpr auto maximumLineBytes = static_cast<std::int64_t>(LineScanner::maximumLineBytes);

// Reads as much of `length` bytes at `offset` as there is; fewer when the file has become shorter. The errno of a
// failed read.
tl::expected<std::int64_t, int> readAt(int fd, char* into, std::int64_t offset, std::int64_t length) {
  std::int64_t done = 0;
  while (done < length) {
    const ssize_t count = ::pread(fd, into + done, static_cast<std::size_t>(length - done), offset + done);
    if (count == 0) break;
    if (count < 0) {
      if (errno == EINTR) continue;
      return tl::unexpected(errno);
    }
    done += count;
  }
  return done;
}

void reserveBytes(std::vector<char>& buffer, std::int64_t bytes) {
  const std::size_t wanted = static_cast<std::size_t>(bytes) + LineScanner::paddingBytes;
  if (buffer.size() < wanted) buffer.resize(wanted);
}

}  // namespace

std::int64_t CodexTail::searchFloor(std::int64_t size) {
  std::int64_t window = firstWindowBytes;
  while (window < size && window < lastGrowingWindowBytes) window *= windowGrowth;
  return std::max<std::int64_t>(0, size - window);
}

tl::expected<std::optional<CodexRecord>, int> CodexTail::lastCodexPoint(int fd) {
  struct stat status {};
  if (::fstat(fd, &status) != 0) return tl::unexpected(errno);
  const std::int64_t size = status.st_size;
  const std::int64_t floor = searchFloor(size);
  lineEnd_ = size;
  lineIsMarked_ = false;
  std::int64_t length = firstChunkBytes;
  for (std::int64_t end = size; end > floor; length = chunkBytes) {
    Chunk chunk{std::max(floor, end - length), end, 0};
    chunk.bytes = std::min(size, end + overlapBytes) - chunk.start;
    reserveBytes(buffer_, chunk.bytes);
    const auto count = readAt(fd, buffer_.data(), chunk.start, chunk.bytes);
    if (!count) return tl::unexpected(count.error());
    if (*count < chunk.bytes)
      return std::optional<CodexRecord>();  // shorter than it was: the next scan sees another size
    auto record = searchChunk(fd, chunk, chunk.start == floor);
    if (!record || *record) return record;
    end = chunk.start;
  }
  return std::optional<CodexRecord>();
}

tl::expected<std::optional<CodexRecord>, int> CodexTail::searchChunk(int fd, const Chunk& chunk, bool isFirstOfWindow) {
  const std::string_view held(buffer_.data(), static_cast<std::size_t>(chunk.bytes));
  auto cut = static_cast<std::size_t>(chunk.end - chunk.start);
  for (;;) {
    const void* found = cut == 0 ? nullptr : ::memrchr(held.data(), '\n', cut);
    const std::size_t begin =
        found == nullptr ? 0 : static_cast<std::size_t>(static_cast<const char*>(found) - held.data()) + 1;
    const std::string_view part = held.substr(begin, cut - begin + marker.size() - 1);
    lineIsMarked_ = lineIsMarked_ || ::memmem(part.data(), part.size(), marker.data(), marker.size()) != nullptr;
    if (found == nullptr && !isFirstOfWindow) return std::optional<CodexRecord>();  // the line begins further in front
    if (lineIsMarked_) {
      auto record = readLine(fd, chunk, chunk.start + static_cast<std::int64_t>(begin));
      if (!record || *record) return record;
    }
    if (found == nullptr) return std::optional<CodexRecord>();
    cut = begin - 1;
    lineEnd_ = chunk.start + static_cast<std::int64_t>(cut);
    lineIsMarked_ = false;
  }
}

tl::expected<std::optional<CodexRecord>, int> CodexTail::readLine(int fd, const Chunk& chunk, std::int64_t start) {
  const std::int64_t length = lineEnd_ - start;
  if (length > maximumLineBytes) return std::optional<CodexRecord>();
  if (lineEnd_ <= chunk.start + chunk.bytes) {
    return CodexLogParser::codexEvent({buffer_.data() + (start - chunk.start), static_cast<std::size_t>(length)});
  }
  reserveBytes(line_, length);
  const auto count = readAt(fd, line_.data(), start, length);
  if (!count) return tl::unexpected(count.error());
  auto record = CodexLogParser::codexEvent({line_.data(), static_cast<std::size_t>(*count)});
  if (length > chunkBytes) line_ = {};
  return record;
}

}  // namespace quillmeter
