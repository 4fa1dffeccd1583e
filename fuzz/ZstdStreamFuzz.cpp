// A compressed stream from a foreign file: the limit holds, and how the stream is cut into pieces makes no difference.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "agents/adapters/AgentArchiveReader.h"

namespace {

using quillmeter::AgentArchiveReader;

struct Outcome {
  bool whole = false;
  std::string bytes;
};

Outcome readPiecewise(std::string_view stream, std::size_t pieceBytes) {
  constexpr std::uint64_t limit = 300'000;
  Outcome outcome;
  const auto source = [stream, pieceBytes]() mutable {
    const std::string_view piece = stream.substr(0, pieceBytes);
    stream.remove_prefix(piece.size());
    return std::optional(piece);
  };
  outcome.whole = AgentArchiveReader::read(source, true, limit, [&](std::string_view bytes) {
                    outcome.bytes += bytes;
                  }).has_value();
  if (outcome.bytes.size() > limit) std::abort();
  return outcome;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view stream(reinterpret_cast<const char*>(data), size);
  const Outcome atOnce = readPiecewise(stream, size + 1);
  const Outcome inPieces = readPiecewise(stream, size % 13 + 1);
  if (atOnce.whole != inPieces.whole) std::abort();
  if (atOnce.whole && atOnce.bytes != inPieces.bytes) std::abort();
  return 0;
}
