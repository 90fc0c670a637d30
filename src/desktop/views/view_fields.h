// How display values reach the window: each record of display values declares its names once, as a table of
// (name, pointer to member), beside itself. Owned by nobody; knows nothing of the window's toolkit.
#pragma once

#include "base/field_list.h"

#include <string_view>

namespace nimbara {

template <class Record, class Value>
struct ViewField {
  std::string_view name;
  Value Record::* member;
};

template <class Record, class Value>
constexpr ViewField<Record, Value> viewField(std::string_view name, Value Record::* member) {
  return {name, member};
}

/// The table of a record; specialised beside it.
template <class Record>
inline constexpr FieldList<> viewFields{};

template <class Record, class Visit>
void forEachViewField(Visit visit) {
  viewFields<Record>.apply([&](auto const&... fields) { (visit(fields), ...); });
}

}  // namespace nimbara
