#include "platform/linux/ProcMeminfo.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "platform/linux/TextFields.h"

namespace quillmeter {
namespace {

constexpr unsigned readingsBetweenListings = 128;  // of zram devices: some four minutes
constexpr std::uint64_t mostKilobytes = std::uint64_t{1} << 50;

// The fields of /proc/meminfo that are wanted, in kB.
struct MeminfoFields {
  std::optional<std::uint64_t> total, available, active, inactive, activeFile, inactiveFile, zswap;
  std::uint64_t unreclaimable = 0;  // sum of the kinds that never become available
};

struct WantedField {
  std::string_view name;
  std::optional<std::uint64_t> MeminfoFields::*field;  // null: added to `unreclaimable`
};

constexpr WantedField wantedFields[] = {
    {"MemTotal:", &MeminfoFields::total},
    {"MemAvailable:", &MeminfoFields::available},
    {"Active:", &MeminfoFields::active},
    {"Inactive:", &MeminfoFields::inactive},
    {"Active(file):", &MeminfoFields::activeFile},
    {"Inactive(file):", &MeminfoFields::inactiveFile},
    {"Zswap:", &MeminfoFields::zswap},
    {"Unevictable:", nullptr},
    {"SUnreclaim:", nullptr},
    {"KernelStack:", nullptr},
    {"PageTables:", nullptr},
    {"SecPageTables:", nullptr},
    {"Percpu:", nullptr},
    {"VmallocUsed:", nullptr},
    {"Hugetlb:", nullptr},
};

MeminfoFields parseFields(std::string_view text) {
  MeminfoFields fields;
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    const std::string_view name = takeWord(line);
    const auto* wanted = std::find_if(std::begin(wantedFields), std::end(wantedFields),
                                      [name](const WantedField& field) { return field.name == name; });
    if (wanted == std::end(wantedFields)) continue;
    const auto value = numberFrom<std::uint64_t>(takeWord(line));
    if (!value || *value > mostKilobytes) continue;
    if (wanted->field != nullptr) {
      fields.*(wanted->field) = value;
    } else {
      fields.unreclaimable = std::min(fields.unreclaimable + *value, mostKilobytes);
    }
  }
  return fields;
}

}  // namespace

MemoryPageCounts parseMeminfo(std::string_view text, std::uint64_t zramBytes, std::uint64_t pageBytes) {
  const MeminfoFields fields = parseFields(text);
  if (fields.total.value_or(0) == 0) return {};
  const auto pages = [pageBytes](std::uint64_t kilobytes) { return kilobytes * 1024 / pageBytes; };

  MemoryPageCounts counts;
  counts.physicalBytes = *fields.total * 1024;
  counts.pageBytes = pageBytes;
  // Lists that do not say what of them is file-backed cannot be told apart: all of it is then wired.
  if (fields.active && fields.inactive && fields.activeFile && fields.inactiveFile) {
    counts.active = pages(*fields.active);
    counts.inactive = pages(*fields.inactive);
    counts.external =
        std::min(pages(*fields.activeFile) + pages(*fields.inactiveFile), counts.active + counts.inactive);
  }
  counts.compressor = pages(fields.zswap.value_or(0)) + std::min(zramBytes, counts.physicalBytes) / pageBytes;
  if (!fields.available) {
    counts.wired = pages(std::min(fields.unreclaimable, *fields.total));
    return counts;
  }

  const std::uint64_t used = pages(*fields.total - std::min(*fields.available, *fields.total));
  counts.compressor = std::min(counts.compressor, used);
  // Odd containers list more anonymous memory than they call used. The total holds: the excess counts as file-backed.
  const std::uint64_t anonymous = counts.active + counts.inactive - counts.external;
  const std::uint64_t rest = used - counts.compressor;
  if (anonymous > rest) counts.external += anonymous - rest;
  counts.wired = rest - std::min(anonymous, rest);
  return counts;
}

std::uint64_t parseZramBytes(std::string_view text) {
  takeWord(text);  // orig_data_size
  takeWord(text);  // compr_data_size
  return numberFrom<std::uint64_t>(takeWord(text)).value_or(0);
}

ProcMeminfoPages::ProcMeminfoPages(std::filesystem::path root)
    : ProcMeminfoPages(std::move(root), static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE))) {}

ProcMeminfoPages::ProcMeminfoPages(std::filesystem::path root, std::uint64_t pageBytes)
    : root_(std::move(root)), pageBytes_(pageBytes), meminfo_(root_ / "proc/meminfo") {}

MemoryPageCounts ProcMeminfoPages::read() {
  if (readings_++ % readingsBetweenListings == 0) listZramDevices();
  std::array<char, 8192> buffer;
  std::uint64_t zramBytes = 0;
  for (auto& device : zramDevices_) {
    const std::uint64_t bytes = parseZramBytes(device.read(buffer));
    zramBytes += std::min(bytes, mostKilobytes);
  }
  return parseMeminfo(meminfo_.read(buffer), zramBytes, pageBytes_);
}

void ProcMeminfoPages::listZramDevices() {
  zramDevices_.clear();
  std::error_code error;
  for (std::filesystem::directory_iterator entry(root_ / "sys/block", error), end; !error && entry != end;
       entry.increment(error)) {
    if (entry->path().filename().native().starts_with("zram")) zramDevices_.emplace_back(entry->path() / "mm_stat");
  }
}

}  // namespace quillmeter
