// By what messages name one another. Views of the messages, which must outlive them. Pure.
#pragma once

#include "feeds/cap/cap_alert.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace nimbara {

/// Written "sender,identifier".
struct CapKey {
  std::string_view sender;
  std::string_view identifier;

  std::string text() const { return std::string(sender) + "," + std::string(identifier); }
};

/// Keys are found by their text without its being written.
struct CapKeyHash {
  using is_transparent = void;

  static std::uint64_t mixed(std::uint64_t hash, std::string_view text) {
    for (char const c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return hash;
  }
  std::size_t operator()(CapKey const& key) const {
    return mixed(mixed(mixed(kSeed, key.sender), ","), key.identifier);
  }
  std::size_t operator()(std::string_view text) const { return mixed(kSeed, text); }

  static constexpr std::uint64_t kSeed = 0xcbf29ce484222325U;
};
struct CapKeyEqual {
  using is_transparent = void;

  bool operator()(CapKey const& a, CapKey const& b) const {
    return a.sender == b.sender && a.identifier == b.identifier;
  }
  bool operator()(std::string_view text, CapKey const& key) const {
    return text.size() == key.sender.size() + 1 + key.identifier.size() && text.starts_with(key.sender) &&
           text[key.sender.size()] == ',' && text.ends_with(key.identifier);
  }
  bool operator()(CapKey const& key, std::string_view text) const { return (*this)(text, key); }
};

/// Where a service names no sender its identifiers are its own affair, and so it is the service that is
/// named.
CapKey keyOf(CapAlert const& message);
/// Of a message that `of` refers to.
CapKey keyOf(CapReference const& reference, CapAlert const& of);

}  // namespace nimbara
