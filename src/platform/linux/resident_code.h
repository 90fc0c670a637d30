// Gives memory back that a process holds only because it once ran through it: pages of programs and libraries
// that are mapped from their files and never written to. The kernel keeps them in its cache, so what is
// needed again comes back in microseconds.
#pragma once

#include <string_view>

namespace nimbara {

/// Of every library whose path holds `part`; of all of them for an empty one.
void giveBackCode(std::string_view part = {});

}  // namespace nimbara
