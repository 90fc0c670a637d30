// A network component as another version of the program has it: its requests are longer.
#include "platform/linux/http/http_module.h"

#include <cstdlib>

extern "C" {

[[gnu::visibility("default")]] extern nimbara::HttpModule const nimbaraHttpModule;

nimbara::HttpModule const nimbaraHttpModule{
    {.request = sizeof(nimbara::HttpRequest) + 8},
    // Nobody must get as far as this.
    [](std::string const&) -> std::unique_ptr<nimbara::HttpClient> { std::abort(); },
    nullptr,
};
}
