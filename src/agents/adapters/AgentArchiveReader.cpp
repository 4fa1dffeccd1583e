#include "agents/adapters/AgentArchiveReader.h"

#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include "agents/adapters/QMArchiveDecoder.h"

namespace quillmeter {

namespace {

using Result = tl::expected<void, ArchiveReadError>;

// Counts what is handed on and stops before the first byte too many.
class BoundedConsumer {
 public:
  BoundedConsumer(const AgentArchiveReader::Consumer& consume, std::uint64_t limit) : consume_(consume), left_(limit) {}

  bool operator()(std::string_view bytes) {
    if (bytes.size() > left_) return false;
    left_ -= bytes.size();
    if (!bytes.empty()) consume_(bytes);
    return true;
  }

 private:
  const AgentArchiveReader::Consumer& consume_;
  std::uint64_t left_;
};

// One compressed stream of any number of frames, piece by piece.
class FrameStream {
 public:
  explicit FrameStream(BoundedConsumer& consume)
      : consume_(consume),
        decoder_(QMArchiveDecoderCreate(), &QMArchiveDecoderDestroy),
        output_(AgentArchiveReader::outputBytes) {}

  Result append(std::string_view input) {
    if (decoder_ == nullptr) return tl::unexpected(ArchiveReadError::invalid);
    std::size_t produced = 0;
    do {
      std::size_t consumed = 0;
      int frameFinished = 0;
      if (!QMArchiveDecoderProcess(decoder_.get(), input.data(), input.size(), &consumed, output_.data(),
                                   output_.size(), &produced, &frameFinished)) {
        return tl::unexpected(ArchiveReadError::invalid);
      }
      if (!consume_({output_.data(), produced})) return tl::unexpected(ArchiveReadError::tooLarge);
      // A call that finds nothing left behind a finished frame asks for the next header, which need not come.
      if (consumed > 0 || produced > 0) {
        whole_ = frameFinished == 1;
      } else if (!input.empty()) {
        return tl::unexpected(ArchiveReadError::invalid);
      }
      input.remove_prefix(consumed);
    } while (!input.empty() || produced == output_.size());
    return {};
  }

  // Whether the input so far ends with a frame.
  bool whole() const { return whole_; }

 private:
  BoundedConsumer& consume_;
  std::unique_ptr<QMArchiveDecoder, decltype(&QMArchiveDecoderDestroy)> decoder_;
  std::vector<char> output_;
  bool whole_ = false;
};

}  // namespace

Result AgentArchiveReader::read(const Source& source, bool compressed, std::uint64_t limit, const Consumer& consume) {
  BoundedConsumer bounded(consume, limit);
  std::optional<FrameStream> frames;
  if (compressed) frames.emplace(bounded);
  for (;;) {
    const auto piece = source();
    if (!piece) return tl::unexpected(ArchiveReadError::invalid);
    if (piece->empty()) break;
    if (!frames) {
      if (!bounded(*piece)) return tl::unexpected(ArchiveReadError::tooLarge);
    } else if (auto result = frames->append(*piece); !result) {
      return result;
    }
  }
  if (frames && !frames->whole()) return tl::unexpected(ArchiveReadError::truncated);
  return {};
}

AgentArchiveReader::Source AgentArchiveReader::bytesSource(std::string_view bytes) {
  return [bytes]() mutable { return std::optional(std::exchange(bytes, std::string_view())); };
}

AgentArchiveReader::Source AgentArchiveReader::descriptorSource(int fd) {
  return [fd, buffer = std::make_shared<std::vector<char>>(chunkBytes)]() -> std::optional<std::string_view> {
    ssize_t count = 0;
    do {
      count = ::read(fd, buffer->data(), buffer->size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) return std::nullopt;
    return std::string_view(buffer->data(), static_cast<std::size_t>(count));
  };
}

ArchiveLines::ArchiveLines(LineScanner& scanner, Consumer consume)
    : scanner_(scanner), consume_([consume = std::move(consume)](const ScannedLine& line) {
        consume(line.text);
        return true;
      }) {
  scanner_.begin();
}

void ArchiveLines::append(std::string_view bytes) {
  scanner_.append(bytes, consume_);
}

void ArchiveLines::finish() {
  scanner_.finish(consume_);
}

}  // namespace quillmeter
