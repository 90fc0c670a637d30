#include "base/json/json_codec.h"

#include <functional>
#include <map>
#include <string>

namespace nimbara {

template Result<std::map<std::string, std::string, std::less<>>, DecodeError> decodeJson(std::string_view);

}  // namespace nimbara
