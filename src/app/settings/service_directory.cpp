#include "app/settings/service_directory.h"

namespace nimbara {

ServiceDirectory::ServiceDirectory(Configuration configuration, std::string servicesBase)
    : configuration_(std::move(configuration)), servicesBase_(std::move(servicesBase)) {}

ServiceAddress ServiceDirectory::address(Service service) const {
  ServiceRow const& row = rowOf(service);
  ServiceAddress address{std::string(row.host), {}};
  if (auto const found = configuration_.services.find(row.name); found != configuration_.services.end()) {
    if (found->second.host) address.baseUrl = normalizedBase(*found->second.host).value_or(address.baseUrl);
    address.apiKey = found->second.apiKey.value_or("");
  }
  if (row.isOnThisMachine || servicesBase_.empty()) return address;
  address.baseUrl = row.sharesPaths ? servicesBase_ + "/" + std::string(row.name) : servicesBase_;
  return address;
}

bool ServiceDirectory::isChosen(Service service) const {
  auto const found = configuration_.services.find(enumName(service));
  return found != configuration_.services.end() && found->second.host && normalizedBase(*found->second.host);
}

}  // namespace nimbara
