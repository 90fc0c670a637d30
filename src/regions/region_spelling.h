// The names of regions whose accented letters were lost before they were published. Pure.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// `published` as the national service spells it, where it is one of the names known to be damaged; else
/// itself. A name that begins in another way than the known one is a new one, and stays.
std::string spelledRegionName(std::string_view code, std::string published);

}  // namespace nimbara
