#include "platform/linux/module_loader.h"

#include <dlfcn.h>

namespace nimbara {

void const* loadModule(std::filesystem::path const& program, std::string_view file, char const* symbol) {
  for (std::string_view const folder : {".", "../lib/nimbara"}) {
    auto const path = program.parent_path() / folder / file;
    void* const handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    if (handle != nullptr) return dlsym(handle, symbol);
  }
  return nullptr;
}

}  // namespace nimbara
