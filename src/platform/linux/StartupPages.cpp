#include "platform/linux/StartupPages.h"

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <string_view>

namespace quillmeter {
namespace {

bool isPartOfTheKernel(const dl_phdr_info& object) {
  return std::string_view(object.dlpi_name).starts_with("linux-");
}

// Segments without the right to write hold what the file holds, unless the linker had to change the text itself.
bool hasTextRelocations(const dl_phdr_info& object) {
  for (int i = 0; i < object.dlpi_phnum; ++i) {
    const ElfW(Phdr)& header = object.dlpi_phdr[i];
    if (header.p_type != PT_DYNAMIC) continue;
    const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(object.dlpi_addr + header.p_vaddr);
    for (; entry->d_tag != DT_NULL; ++entry) {
      if (entry->d_tag == DT_TEXTREL) return true;
      if (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0) return true;
    }
  }
  return false;
}

int releaseObject(dl_phdr_info* object, std::size_t, void*) {
  if (isPartOfTheKernel(*object) || hasTextRelocations(*object)) return 0;
  const auto pageBytes = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)& header = object->dlpi_phdr[i];
    if (header.p_type != PT_LOAD || (header.p_flags & PF_W) != 0) continue;
    // Whole pages only: the ends may be shared with a neighbour that is written.
    const std::uintptr_t begin = (object->dlpi_addr + header.p_vaddr + pageBytes - 1) / pageBytes * pageBytes;
    const std::uintptr_t end = (object->dlpi_addr + header.p_vaddr + header.p_filesz) / pageBytes * pageBytes;
    if (begin < end) ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
  }
  return 0;
}

}  // namespace

void releaseStartupPages() {
  ::dl_iterate_phdr(&releaseObject, nullptr);
}

}  // namespace quillmeter
