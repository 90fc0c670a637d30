// Universally unique identifiers (RFC 9562): random ones and ones made from a name.
#ifndef NIMBARA_BASE_UUID_H
#define NIMBARA_BASE_UUID_H

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

struct Uuid {
  std::array<std::uint8_t, 16> bytes{};

  /// Version 4. Unpredictable enough to be unique, not meant to be secret.
  static Uuid random();
  /// Version 5: equal names in one `space` give equal identifiers on every machine and in every run.
  static Uuid named(Uuid const& space, std::string_view name);
  /// The usual form of 36 characters, either letter case.
  static std::optional<Uuid> parse(std::string_view text);

  /// "f81d4fae-7dec-41d0-a765-00a0c91e6bf6".
  std::string text() const;

  auto operator<=>(Uuid const&) const = default;
};

/// The identity of one copy of a record in this process. It is made fresh with each record, is never written
/// down and is no part of the record's value: two records that differ only in it are equal.
struct TransientId {
  Uuid value = Uuid::random();

  bool operator==(TransientId const&) const { return true; }
};

}  // namespace nimbara

#endif  // NIMBARA_BASE_UUID_H
