#include "base/LineScanner.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace quillmeter {

namespace {

constexpr std::size_t none = std::string_view::npos;

// read() or pread(), repeated while a signal interrupts it.
template <typename Call>
ssize_t repeated(Call call) {
  for (;;) {
    const ssize_t result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

std::size_t findLineFeed(const char* text, std::size_t begin, std::size_t end) {
  const void* at = begin < end ? std::memchr(text + begin, '\n', end - begin) : nullptr;
  return at == nullptr ? none : static_cast<std::size_t>(static_cast<const char*>(at) - text);
}

std::size_t findLastLineFeed(const char* text, std::size_t begin, std::size_t end) {
  const void* at = begin < end ? memrchr(text + begin, '\n', end - begin) : nullptr;
  return at == nullptr ? none : static_cast<std::size_t>(static_cast<const char*>(at) - text);
}

}  // namespace

void LineScanner::FreeMemory::operator()(char* memory) const {
  std::free(memory);
}

LineScanner::LineScanner(std::string marker, bool countLines) : LineScanner(std::move(marker), countLines, Sizes{}) {}

LineScanner::LineScanner(std::string marker, bool countLines, Sizes sizes)
    : search_(std::move(marker)), countLines_(countLines), sizes_(sizes) {}

void LineScanner::setCapacity(std::size_t bytes) {
  bytes += paddingBytes;
  if (bytes == capacity_) return;
  // realloc() moves pages instead of copying a long line, and never holds it twice.
  char* memory = static_cast<char*>(std::realloc(buffer_.get(), bytes));
  if (memory == nullptr) throw std::bad_alloc();
  (void)buffer_.release();
  buffer_.reset(memory);
  capacity_ = bytes;
}

void LineScanner::begin() {
  setCapacity(sizes_.block);
  used_ = floor_ = missing_ = counted_ = 0;
  marked_ = skipping_ = false;
  file_ = -1;
  offset_ = 0;
  lineIndex_ = 0;
}

ScanEnd LineScanner::scan(int fd, const Consume& consume) {
  begin();
  const off_t offset = ::lseek(fd, 0, SEEK_CUR);
  file_ = offset >= 0 ? fd : -1;
  offset_ = std::max<off_t>(offset, 0);
  for (;;) {
    makeRoom();
    const std::size_t room = std::min(capacity_ - paddingBytes - used_, sizes_.block);
    const ssize_t got = repeated([&] { return ::read(fd, buffer_.get() + used_, room); });
    if (got < 0) return ScanEnd::readError;
    if (got == 0) return finish(consume) ? ScanEnd::complete : ScanEnd::stopped;
    offset_ += got;
    if (!process(static_cast<std::size_t>(got), consume)) return ScanEnd::stopped;
  }
}

bool LineScanner::append(std::string_view bytes, const Consume& consume) {
  while (!bytes.empty()) {
    makeRoom();
    const std::size_t part = std::min(bytes.size(), capacity_ - paddingBytes - used_);
    std::memcpy(buffer_.get() + used_, bytes.data(), part);
    bytes.remove_prefix(part);
    if (!process(part, consume)) return false;
  }
  return true;
}

bool LineScanner::finish(const Consume& consume) {
  const bool wanted = marked_ && !skipping_;
  const std::size_t end = used_;
  used_ = floor_ = missing_ = 0;
  marked_ = skipping_ = false;
  return !wanted || deliver(0, end, consume);
}

// A quarter of a block at least, so that no unfinished line makes the reads small.
void LineScanner::makeRoom() {
  const std::size_t least = sizes_.block / 4 + 1;
  if (capacity_ - paddingBytes > sizes_.block && used_ + least <= sizes_.block) setCapacity(sizes_.block);
  std::size_t size = capacity_ - paddingBytes;
  if (size - used_ >= least) return;
  while (size - used_ < least) size *= 2;
  setCapacity(std::min(size, sizes_.maximumLine + sizes_.block));
}

// Takes in the bytes that were put behind buffer_[0, used_). Stops at the first line that `consume` wants to be the
// last.
bool LineScanner::process(std::size_t fresh, const Consume& consume) {
  const std::size_t known = used_;  // the bytes before hold no line feed
  used_ += fresh;
  floor_ = counted_ = 0;
  if (skipping_ && !skipToLineEnd(known)) return true;
  if (marked_) {
    const std::size_t end = findLineFeed(buffer_.get(), known, used_);
    if (end != none) {
      marked_ = false;
      if (!deliver(0, end, consume)) return false;
    }
  }
  if (!marked_) {
    const std::size_t overlap = overlapBytes();
    if (!searchLines(std::max(floor_, known > overlap ? known - overlap : 0), consume)) return false;
  }
  if (!skipping_) keepUnfinished(std::max(floor_, known));
  return true;
}

bool LineScanner::searchLines(std::size_t from, const Consume& consume) {
  while (from < used_) {
    std::size_t hit = search_.find({buffer_.get() + from, used_ - from});
    if (hit == none) return true;
    hit += from;
    const std::size_t before = findLastLineFeed(buffer_.get(), floor_, hit);
    if (before != none) {
      floor_ = before + 1;
      missing_ = 0;
    } else if (missing_ > 0) {
      const std::size_t shift = missing_;
      if (!restoreLineStart()) {
        if (!skipToLineEnd(hit)) return true;
        from = floor_;
        continue;
      }
      hit += shift;
    }
    const std::size_t end = findLineFeed(buffer_.get(), hit + search_.marker().size(), used_);
    if (end == none) {
      marked_ = true;
      return true;
    }
    if (!deliver(floor_, end, consume)) return false;
    from = floor_;
  }
  return true;
}

// Moves floor_ behind the next line feed, or drops everything when there is none yet.
bool LineScanner::skipToLineEnd(std::size_t from) {
  const std::size_t end = findLineFeed(buffer_.get(), from, used_);
  missing_ = 0;
  skipping_ = end == none;
  if (skipping_) {
    used_ = 0;
  } else {
    floor_ = end + 1;
  }
  return !skipping_;
}

bool LineScanner::deliver(std::size_t begin, std::size_t end, const Consume& consume) {
  countUpTo(begin);
  floor_ = end + 1;
  if (end - begin > sizes_.maximumLine) return true;
  return consume(ScannedLine{{buffer_.get() + begin, end - begin}, lineIndex_});
}

// Reads the beginning of the line at hand, which was not kept, once more: the whole line lies in the buffer then.
// False, with the buffer as it was, when the file no longer holds it.
bool LineScanner::restoreLineStart() {
  const std::size_t length = missing_;
  if (used_ + length > capacity_ - paddingBytes) setCapacity(used_ + length);
  char* const text = buffer_.get();
  std::memmove(text + length, text, used_);
  const off_t start = offset_ - static_cast<off_t>(used_ + length);
  std::size_t done = 0;
  while (done < length) {
    const ssize_t got =
        repeated([&] { return ::pread(file_, text + done, length - done, start + static_cast<off_t>(done)); });
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  if (done < length || findLineFeed(text, 0, length) != none) {
    std::memmove(text, text + length, used_);
    return false;
  }
  used_ += length;
  missing_ = 0;
  return true;
}

// Moves the line without an end to the front of the buffer, or what has to be kept of it. The bytes before `from` hold
// no line feed.
void LineScanner::keepUnfinished(std::size_t from) {
  if (!marked_) {
    const std::size_t end = findLastLineFeed(buffer_.get(), from, used_);
    if (end != none) {
      floor_ = end + 1;
      missing_ = 0;
    }
  }
  countUpTo(floor_);
  std::size_t length = used_ - floor_;
  if (missing_ + length > sizes_.maximumLine) {
    skipping_ = true;
    marked_ = false;
    used_ = missing_ = 0;
    return;
  }
  const bool mayBeReread = !marked_ && file_ >= 0;
  if (mayBeReread && length > overlapBytes() && (missing_ > 0 || length > sizes_.block / 4 * 3)) {
    const std::size_t dropped = length - overlapBytes();
    missing_ += dropped;
    floor_ += dropped;
    length -= dropped;
  }
  std::memmove(buffer_.get(), buffer_.get() + floor_, length);
  used_ = length;
}

void LineScanner::countUpTo(std::size_t end) {
  if (!countLines_ || end <= counted_) return;
  // Lines of logs are long: the C library's search goes from one to the next faster than a count over all bytes.
  for (std::size_t at = counted_; (at = findLineFeed(buffer_.get(), at, end)) != none; ++at) ++lineIndex_;
  counted_ = end;
}

// So many bytes at the end of a block may be the beginning of a marker.
std::size_t LineScanner::overlapBytes() const {
  return search_.marker().empty() ? 0 : search_.marker().size() - 1;
}

}  // namespace quillmeter
