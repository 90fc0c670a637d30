// WMO weather codes (code table 4677 as forecast services use it) as WWO codes and English descriptions.
#pragma once

#include <string_view>

namespace nimbara {

/// The WWO code; "119" (cloudy) for codes outside the table.
std::string_view wwoCodeOfWmo(int wmo);

/// "Slight Rain Showers"; "Unknown" for codes outside the table.
std::string_view descriptionOfWmo(int wmo);

}  // namespace nimbara
