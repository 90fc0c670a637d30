// Whether there is a network at all, from the kernel's tables of routes: nobody is asked.
#pragma once

#include <filesystem>
#include <string_view>

namespace nimbara {

/// `folder` has the kernel's "route" and "ipv6_route". True where neither can be read: nothing speaks against
/// a network.
bool hasDefaultRoute(std::filesystem::path const& folder = "/proc/net");

/// The same of the tables' texts.
bool hasDefaultRouteV4(std::string_view table);
bool hasDefaultRouteV6(std::string_view table);

}  // namespace nimbara
