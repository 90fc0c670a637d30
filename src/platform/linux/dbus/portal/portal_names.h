// Where the desktop's portals are on the session's bus, for programs in a sandbox.
#pragma once

#include <map>
#include <sdbus-c++/sdbus-c++.h>
#include <string>

namespace nimbara {

inline constexpr char kPortal[] = "org.freedesktop.portal.Desktop";
inline constexpr char kPortalPath[] = "/org/freedesktop/portal/desktop";
inline constexpr char kBusProperties[] = "org.freedesktop.DBus.Properties";

using PortalOptions = std::map<std::string, sdbus::Variant>;

/// The object at which the portal answers the request of this connection with that token.
inline std::string portalRequestPath(sdbus::IConnection const& connection, std::string const& token) {
  std::string sender = connection.getUniqueName().substr(1);
  for (char& letter : sender) letter = letter == '.' ? '_' : letter;
  return std::string(kPortalPath) + "/request/" + sender + "/" + token;
}

}  // namespace nimbara
