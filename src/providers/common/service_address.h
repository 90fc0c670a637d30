// How an outside service is reached.
#pragma once

#include <string>

namespace nimbara {

/// "https://api.open-meteo.com" and, where the service asks for one, the key.
struct ServiceAddress {
  std::string baseUrl;
  std::string apiKey;
};

}  // namespace nimbara
