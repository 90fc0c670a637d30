// What the module offers to the program that loads it. Both are built together; there is no other user.
#pragma once

#include "platform/es256.h"
#include "platform/http/http_client.h"

#include <cstddef>
#include <memory>
#include <string>

namespace nimbara {

/// By what both sides tell that they were built together: an update may replace the module beneath a program
/// that is running, and what one of them writes the other must be able to read.
struct HttpLayout {
  std::size_t request = sizeof(HttpRequest);
  std::size_t response = sizeof(HttpResponse);
  std::size_t error = sizeof(HttpError);
  std::size_t signature = sizeof(Result<std::string, std::string>);

  bool operator==(HttpLayout const&) const = default;
};

struct HttpModule {
  HttpLayout layout;
  std::unique_ptr<HttpClient> (*make)(std::string const& userAgent);
  Result<std::string, std::string> (*sign)(std::string_view keyPem, std::string_view text);
};

inline constexpr char kHttpModuleSymbol[] = "nimbaraHttpModule";
inline constexpr char kHttpModuleFile[] = "nimbara-http.so";

}  // namespace nimbara
