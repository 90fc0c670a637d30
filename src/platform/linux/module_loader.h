// Parts of the program that lie next to it and are loaded when they are first needed.
#pragma once

#include <filesystem>
#include <string_view>

namespace nimbara {

/// The symbol of a module that lies beside `program` in the build folder, in the library folder when
/// installed; null where there is none. A module stays until the process ends, as what it made may do.
void const* loadModule(std::filesystem::path const& program, std::string_view file, char const* symbol);

}  // namespace nimbara
