#include "model/warnings/warning_kind.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::array<std::string_view, enumNames<WarningKind>.size()> kWords{
    "other", "tornado",      "tropicalCyclone",
    "coast", "thunderstorm", "avalanche",
    "rain",  "snow",         "ice",
    "fire",  "heat",         "cold",
    "fog",   "smoke",        "air",
    "dust",  "wind",         "sun"};

}  // namespace

std::string_view wordOf(WarningKind kind) {
  return kWords[static_cast<std::size_t>(kind)];
}

}  // namespace nimbara
