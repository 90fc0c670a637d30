#include "feeds/alerts/events/cap_keys.h"

namespace nimbara {

namespace {

/// Where a service names no sender its identifiers are its own affair, and so it is the service that is
/// named.
std::string_view senderOf(CapAlert const& message) {
  bool const isNamed = !message.sender.empty() || message.infos.empty();
  return isNamed ? message.sender : message.infos.front().senderName;
}

}  // namespace

CapKey keyOf(CapAlert const& message) {
  return {senderOf(message), message.identifier};
}

CapKey keyOf(CapReference const& reference, CapAlert const& of) {
  bool const isNamed = !reference.sender.empty() || !of.sender.empty();
  return {isNamed ? std::string_view(reference.sender) : senderOf(of), reference.identifier};
}

}  // namespace nimbara
