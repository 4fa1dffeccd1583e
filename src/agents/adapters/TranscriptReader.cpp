#include "agents/adapters/TranscriptReader.h"

#include "agents/adapters/LocalUsageReader.h"

namespace quillmeter {

TranscriptReader::TranscriptReader()
    : messageLines_(std::string(LocalUsageReader::usageMarker)), coldLines_("\"event_json\"") {}

TranscriptReader::Result TranscriptReader::plainFile(int fd) {
  TranscriptUsage usage;
  const ScanEnd end = messageLines_.scan(fd, [&](const ScannedLine& line) {
    if (const auto object = lineParser_.parsePadded(line.text)) usage.append(*object);
    return true;
  });
  if (end != ScanEnd::complete) return tl::unexpected(ArchiveReadError::invalid);
  return usage.takeEvents();
}

TranscriptReader::Result TranscriptReader::transcript(const AgentArchiveReader::Source& source, bool compressed,
                                                      std::uint64_t limit) {
  TranscriptUsage usage;
  ArchiveLines lines(messageLines_, [&](std::string_view line) {
    if (const auto object = lineParser_.parsePadded(line)) usage.append(*object);
  });
  const auto read =
      AgentArchiveReader::read(source, compressed, limit, [&](std::string_view bytes) { lines.append(bytes); });
  if (!read) return tl::unexpected(read.error());
  lines.finish();
  return usage.takeEvents();
}

TranscriptReader::Result TranscriptReader::coldArchive(const AgentArchiveReader::Source& source, bool compressed,
                                                       std::uint64_t limit) {
  TranscriptUsage usage;
  ArchiveLines lines(coldLines_, [&](std::string_view line) { coldLine(line, usage); });
  const auto read =
      AgentArchiveReader::read(source, compressed, limit, [&](std::string_view bytes) { lines.append(bytes); });
  if (!read) return tl::unexpected(read.error());
  lines.finish();
  return usage.takeEvents();
}

void TranscriptReader::coldLine(std::string_view line, TranscriptUsage& usage) {
  const auto object = lineParser_.parsePadded(line);
  if (!object || object->string("kind") != "event") return;
  const JsonObject row = object->object("row").value_or(*object);
  if (const auto text = row.string("event_json")) event(*text, row.value("created_at"), usage);
}

void TranscriptReader::event(std::string_view text, const UsageValue& fallbackTimestamp, TranscriptUsage& usage) {
  if (text.find(LocalUsageReader::usageMarker) == std::string_view::npos) return;
  if (const auto object = eventParser_.parse(text)) usage.append(*object, fallbackTimestamp);
}

tl::expected<void, ArchiveReadError> TranscriptReader::compressedEvent(std::string_view bytes, std::uint64_t limit,
                                                                       const UsageValue& fallbackTimestamp,
                                                                       TranscriptUsage& usage) {
  eventText_.clear();
  const auto read = AgentArchiveReader::read(AgentArchiveReader::bytesSource(bytes), true, limit,
                                             [&](std::string_view piece) { eventText_ += piece; });
  if (read) event(eventText_, fallbackTimestamp, usage);
  return read;
}

}  // namespace quillmeter
