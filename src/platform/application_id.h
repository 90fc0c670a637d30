// The name by which desktops know the program: of its desktop file, its icon and its permissions.
#pragma once

namespace nimbara {

inline constexpr char kApplicationId[] = "io.github.nimbara.Nimbara";
inline constexpr char kApplicationName[] = "Nimbara";

}  // namespace nimbara
