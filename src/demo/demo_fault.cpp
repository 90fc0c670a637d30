#include "demo/demo_fault.h"

#include "base/text/text.h"

namespace nimbara {

namespace {

void append(std::string& list, std::string_view name) {
  list.append(list.empty() ? "" : ", ").append(name);
}

/// The user's own model is played where a scene has one.
bool isPlayed(ServiceRow const& row) {
  return !row.isOnThisMachine || row.service == Service::languageModel;
}

std::string faultNames() {
  std::string list;
  for (std::string_view const name : enumNames<DemoFault::Kind>) append(list, name);
  return list;
}

}  // namespace

std::string demoServiceNames() {
  std::string list;
  for (ServiceRow const& row : kServices) {
    if (isPlayed(row)) append(list, row.name);
  }
  return list;
}

Result<DemoFault, std::string> parseDemoFault(std::string_view text) {
  auto const parts = split(text, '=');
  auto const service = enumFromName<Service>(parts[0]);
  if (!service || !isPlayed(rowOf(*service))) {
    return std::unexpected("'" + oneLine(parts[0]) + "' is not a demo service; choose from " +
                           demoServiceNames());
  }
  auto const kind = parts.size() == 2 ? enumFromName<DemoFault::Kind>(parts[1]) : std::nullopt;
  if (!kind) {
    return std::unexpected("'" + oneLine(text) + "' is not a fault; use " + std::string(parts[0]) +
                           "= and one of " + faultNames());
  }
  return DemoFault{*service, *kind};
}

}  // namespace nimbara
