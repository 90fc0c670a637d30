#include "demo/demo_fault.h"

#include "base/text/text.h"

namespace nimbara {

namespace {

std::string namesOf(auto const& names) {
  std::string list;
  for (std::string_view const name : names) list += (list.empty() ? "" : ", ") + std::string(name);
  return list;
}

}  // namespace

Result<DemoFault, std::string> parseDemoFault(std::string_view text) {
  auto const parts = split(text, '=');
  auto const service = enumFromName<DemoService>(parts[0]);
  if (!service) {
    return std::unexpected("'" + oneLine(parts[0]) + "' is not a demo service; choose from " +
                           namesOf(enumNames<DemoService>));
  }
  auto const kind = parts.size() == 2 ? enumFromName<DemoFault::Kind>(parts[1]) : std::nullopt;
  if (!kind) {
    return std::unexpected("'" + oneLine(text) + "' is not a fault; use " + std::string(parts[0]) +
                           "= and one of " + namesOf(enumNames<DemoFault::Kind>));
  }
  return DemoFault{*service, *kind};
}

}  // namespace nimbara
