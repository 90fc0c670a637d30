// Enumerations with one table of texts. A specialisation of `enumNames` lists the texts in the order of the
// enumerators, which count from zero:
//
//   template <> inline constexpr auto enumNames<Colour> = std::to_array<std::string_view>({"red", "green"});
//   static_assert(enumNamesComplete<Colour>(Colour::green));
#ifndef NIMBARA_BASE_ENUM_NAMES_H
#define NIMBARA_BASE_ENUM_NAMES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace nimbara {

template <class E>
inline constexpr std::nullptr_t enumNames = nullptr;

template <class E>
concept NamedEnum = !std::is_same_v<decltype(enumNames<E>), std::nullptr_t const>;

template <NamedEnum E>
constexpr std::string_view enumName(E value) {
  return enumNames<E>[static_cast<std::size_t>(value)];
}

template <NamedEnum E>
constexpr std::optional<E> enumFromName(std::string_view name) {
  for (std::size_t i = 0; i < enumNames<E>.size(); ++i) {
    if (enumNames<E>[i] == name) return static_cast<E>(i);
  }
  return std::nullopt;
}

/// True when the table ends with `last` and no text stands in it twice or is empty.
template <NamedEnum E>
constexpr bool enumNamesComplete(E last) {
  if (enumNames<E>.size() != static_cast<std::size_t>(last) + 1) return false;
  for (std::size_t i = 0; i < enumNames<E>.size(); ++i) {
    if (enumNames<E>[i].empty() || enumFromName<E>(enumNames<E>[i]) != static_cast<E>(i)) return false;
  }
  return true;
}

/// A set of enumerators (at most 32 of them).
template <NamedEnum E>
class EnumSet {
 public:
  constexpr EnumSet() = default;
  constexpr EnumSet(std::initializer_list<E> members) {
    for (E const member : members) insert(member);
  }
  static constexpr EnumSet all() {
    EnumSet set;
    set.bits_ = (std::uint64_t{1} << enumNames<E>.size()) - 1;
    return set;
  }

  constexpr void insert(E member) { bits_ |= bit(member); }
  constexpr void insertAll(EnumSet others) { bits_ |= others.bits_; }
  constexpr void erase(E member) { bits_ &= ~bit(member); }
  constexpr bool contains(E member) const { return (bits_ & bit(member)) != 0; }
  constexpr bool empty() const { return bits_ == 0; }
  constexpr bool operator==(EnumSet const&) const = default;

 private:
  static_assert(enumNames<E>.size() <= 32);
  static constexpr std::uint64_t bit(E member) { return std::uint64_t{1} << static_cast<unsigned>(member); }

  std::uint64_t bits_ = 0;
};

}  // namespace nimbara

#endif  // NIMBARA_BASE_ENUM_NAMES_H
