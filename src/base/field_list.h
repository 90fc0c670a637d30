// A list of a record's fields that differ in their types, walked at compile time. It stands where std::tuple
// would: a tuple of thirty elements instantiates hundreds of templates in every source that sees it, this one
// thirty.
#ifndef NIMBARA_BASE_FIELD_LIST_H
#define NIMBARA_BASE_FIELD_LIST_H

#include <cstddef>
#include <utility>

namespace nimbara {

namespace field_list_detail {

template <std::size_t index, class Field>
struct Slot {
  Field field;
};

template <class Indices, class... Fields>
struct Slots;
template <std::size_t... index, class... Fields>
struct Slots<std::index_sequence<index...>, Fields...> : Slot<index, Fields>... {
  constexpr explicit Slots(Fields... fields) : Slot<index, Fields>{fields}... {}

  template <class Function>
  constexpr decltype(auto) apply(Function&& function) const {
    return function(static_cast<Slot<index, Fields> const&>(*this).field...);
  }
};

template <std::size_t index, class Field>
constexpr Field const& fieldOf(Slot<index, Field> const& slot) {
  return slot.field;
}

}  // namespace field_list_detail

template <class... Fields>
struct FieldList : field_list_detail::Slots<std::index_sequence_for<Fields...>, Fields...> {
  static constexpr std::size_t size = sizeof...(Fields);

  constexpr explicit FieldList(Fields... fields)
      : field_list_detail::Slots<std::index_sequence_for<Fields...>, Fields...>(fields...) {}

  /// The field at `index`.
  template <std::size_t index>
  constexpr auto const& at() const {
    return field_list_detail::fieldOf<index>(*this);
  }
};

}  // namespace nimbara

#endif  // NIMBARA_BASE_FIELD_LIST_H
