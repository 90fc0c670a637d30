#include "platform/linux/resident_code.h"

#include <link.h>
#include <string>
#include <sys/mman.h>

namespace nimbara {

namespace {

int giveBackSegments(dl_phdr_info* library, std::size_t, void* part) {
  if (std::string_view(library->dlpi_name).find(*static_cast<std::string_view*>(part)) ==
      std::string_view::npos) {
    return 0;
  }
  for (ElfW(Half) i = 0; i < library->dlpi_phnum; ++i) {
    ElfW(Phdr) const& segment = library->dlpi_phdr[i];
    // What may be written to holds what the loader put there; it would be lost.
    if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0) continue;
    auto const begin = (library->dlpi_addr + segment.p_vaddr) & ~(segment.p_align - 1);
    auto const end = library->dlpi_addr + segment.p_vaddr + segment.p_memsz;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the loader gives addresses as numbers
    madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
  }
  return 0;
}

}  // namespace

void giveBackCode(std::string_view part) {
  dl_iterate_phdr(giveBackSegments, &part);
}

}  // namespace nimbara
