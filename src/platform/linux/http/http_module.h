// What the module offers to the program that loads it. Both are built together; there is no other user.
#pragma once

#include "platform/http_client.h"

#include <memory>
#include <string>

namespace nimbara {

struct HttpModule {
  std::unique_ptr<HttpClient> (*make)(std::string const& userAgent);
};

inline constexpr char kHttpModuleSymbol[] = "nimbaraHttpModule";
inline constexpr char kHttpModuleFile[] = "nimbara-http.so";

}  // namespace nimbara
