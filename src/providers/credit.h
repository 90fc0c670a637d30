// What must be shown beside the data of a service.
#pragma once

#include <string_view>

namespace nimbara {

struct Credit {
  std::string_view text;
  std::string_view link;
};

}  // namespace nimbara
