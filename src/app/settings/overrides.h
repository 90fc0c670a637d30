// What one run has decided for itself, whatever the settings say: the options of a command line.
#pragma once

#include "base/units.h"
#include "model/provider_option.h"

#include <optional>
#include <string>

namespace nimbara {

struct Overrides {
  std::optional<Units> units;
  std::string language;  ///< empty: the settings'
  std::optional<WeatherProviderOption> provider;
};

}  // namespace nimbara
