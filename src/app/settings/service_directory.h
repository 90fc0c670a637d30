// Where each outside service is reached: its own host, an address of the user's, or what stands in for all.
#pragma once

#include "app/settings/configuration.h"
#include "platform/service.h"
#include "providers/common/service_address.h"

#include <string>

namespace nimbara {

class ServiceDirectory {
 public:
  /// `servicesBase`, when not empty, stands in place of every service's scheme and host.
  ServiceDirectory(Configuration configuration, std::string servicesBase);

  ServiceAddress address(Service service) const;
  /// The user has named an address for it.
  bool isChosen(Service service) const;
  /// The base that stands in for the services; empty for the services themselves.
  std::string const& standIn() const { return servicesBase_; }

 private:
  Configuration configuration_;
  std::string servicesBase_;
};

}  // namespace nimbara
