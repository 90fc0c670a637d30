// The conditions of the generated weather in the words of each service.
#pragma once

#include <string_view>

namespace nimbara {

struct DemoCondition {
  int wmo;
  std::string_view wwo;
  std::string_view description;
  std::string_view metSymbol;  ///< without the suffix for day or night
  bool metHasDayForms;
  std::string_view appleCode;
};

/// The row of a code that the generated weather can have.
DemoCondition const& demoCondition(int wmo);

}  // namespace nimbara
