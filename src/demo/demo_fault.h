// The ways in which each service that the demo stands in for can be made to misbehave.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"
#include "platform/service.h"

#include <string>
#include <string_view>

namespace nimbara {

struct DemoFault {
  /// 500 with a page of HTML; no answer; an answer that is no data; a connection that breaks in the middle;
  /// one byte a second; redirects in a circle; a forecast for the other side of the globe; 200 and nothing
  /// behind it; 200 and word of an error in XML; 403; and of services with pictures: 429 for each of them,
  /// lists without entries, pictures of writing, wholly transparent pictures; of a
  /// language model: a number that is no fact.
  enum class Kind {
    status500,
    timeout,
    garbage,
    drop,
    drip,
    loop,
    elsewhere,
    empty,
    exception,
    status403,
    status429,
    emptyList,
    writing,
    transparent,
    invents
  };

  Service service = Service::openMeteo;
  Kind kind = Kind::status500;

  bool operator==(DemoFault const&) const = default;
};

template <>
inline constexpr auto enumNames<DemoFault::Kind> = std::to_array<std::string_view>(
    {"500", "timeout", "garbage", "drop", "drip", "loop", "elsewhere", "empty", "exception", "403", "429",
     "emptyList", "writing", "transparent", "invents"});
static_assert(enumNamesComplete(DemoFault::Kind::invents));

/// The services that a fault may name: those that the demo stands in for, separated by commas.
std::string demoServiceNames();

/// "openMeteo=500"; the error is a sentence that names what is wrong.
Result<DemoFault, std::string> parseDemoFault(std::string_view text);

}  // namespace nimbara
