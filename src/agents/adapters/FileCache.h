#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "agents/adapters/LocalUsageReader.h"

namespace quillmeter {

// What an adapter has parsed, by path, so that a file is opened only when its signature changed. Entry is a record with
// a field `signature`. Lives inside one adapter; files that a scan does not ask for are forgotten at its end.
template <typename Entry>
class FileCache {
 public:
  void beginScan() { ++scan_; }
  void endScan() {
    std::erase_if(slots_, [this](const auto& item) { return item.second.scan != scan_; });
  }
  void clear() { slots_.clear(); }

  // The entry of a file; valid until the next call. `parse` fills an entry and answers whether the file could be read
  // to its end: if not, it is parsed again next time.
  template <typename Parse>
  const Entry& entry(const UsageFile& file, Parse&& parse) {
    Slot& slot = slots_[file.path.native()];
    slot.scan = scan_;
    if (slot.complete && slot.entry.signature == file.signature) return slot.entry;
    slot.entry = Entry{};
    slot.entry.signature = file.signature;
    slot.complete = std::forward<Parse>(parse)(slot.entry);
    return slot.entry;
  }

 private:
  struct Slot {
    Entry entry;
    bool complete = false;
    std::uint64_t scan = 0;
  };

  std::unordered_map<std::string, Slot> slots_;
  std::uint64_t scan_ = 0;
};

}  // namespace quillmeter
