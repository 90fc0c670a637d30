#include "platform/linux/http/http_module.h"

#include "platform/linux/http/curl_http_client.h"
#include "platform/linux/http/es256.h"

extern "C" {

[[gnu::visibility("default")]] extern nimbara::HttpModule const nimbaraHttpModule;

nimbara::HttpModule const nimbaraHttpModule{
    {},
    [](std::string const& userAgent) -> std::unique_ptr<nimbara::HttpClient> {
      return std::make_unique<nimbara::CurlHttpClient>(nimbara::CurlOptions{userAgent, {}});
    },
    &nimbara::signEs256,
};
}
