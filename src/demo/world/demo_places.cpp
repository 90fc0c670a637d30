#include "demo/world/demo_places.h"

#include "base/text/display_text.h"
#include "base/text/text.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr DemoPlace kPlaces[] = {
    {1, "Berlin", "Germany", "DE", "Berlin", {52.52, 13.41}, "Europe/Berlin", 3'600'000},
    {2, "London", "United Kingdom", "GB", "England", {51.51, -0.13}, "Europe/London", 8'900'000},
    {3, "London", "Canada", "CA", "Ontario", {42.98, -81.25}, "America/Toronto", 420'000},
    {4, "Paris", "France", "FR", "Île-de-France", {48.85, 2.35}, "Europe/Paris", 2'100'000},
    {5, "Lisbon", "Portugal", "PT", "Lisbon", {38.72, -9.14}, "Europe/Lisbon", 545'000},
    {6, "Madrid", "Spain", "ES", "Madrid", {40.42, -3.70}, "Europe/Madrid", 3'300'000},
    {7, "Rome", "Italy", "IT", "Lazio", {41.89, 12.51}, "Europe/Rome", 2'800'000},
    {8, "Vienna", "Austria", "AT", "Vienna", {48.21, 16.37}, "Europe/Vienna", 1'900'000},
    {9, "Warsaw", "Poland", "PL", "Mazovia", {52.23, 21.01}, "Europe/Warsaw", 1'800'000},
    {10, "Tromsø", "Norway", "NO", "Troms", {69.65, 18.96}, "Europe/Oslo", 72'000},
    {11,
     "Longyearbyen",
     "Svalbard and Jan Mayen",
     "SJ",
     "Svalbard",
     {78.22, 15.65},
     "Arctic/Longyearbyen",
     2'400},
    {12, "Helsinki", "Finland", "FI", "Uusimaa", {60.17, 24.94}, "Europe/Helsinki", 660'000},
    {13, "Reykjavík", "Iceland", "IS", "Capital Region", {64.14, -21.90}, "Atlantic/Reykjavik", 130'000},
    {14, "Athens", "Greece", "GR", "Attica", {37.98, 23.72}, "Europe/Athens", 660'000},
    {15, "Istanbul", "Türkiye", "TR", "Istanbul", {41.01, 28.95}, "Europe/Istanbul", 15'000'000},
    {16, "Cairo", "Egypt", "EG", "Cairo", {30.06, 31.25}, "Africa/Cairo", 9'700'000},
    {17, "Lagos", "Nigeria", "NG", "Lagos", {6.45, 3.39}, "Africa/Lagos", 15'000'000},
    {18, "Nairobi", "Kenya", "KE", "Nairobi", {-1.28, 36.82}, "Africa/Nairobi", 4'400'000},
    {19,
     "Cape Town",
     "South Africa",
     "ZA",
     "Western Cape",
     {-33.93, 18.42},
     "Africa/Johannesburg",
     4'700'000},
    {20, "Mumbai", "India", "IN", "Maharashtra", {19.07, 72.88}, "Asia/Kolkata", 12'700'000},
    {21, "Kathmandu", "Nepal", "NP", "Bagmati", {27.70, 85.32}, "Asia/Kathmandu", 1'400'000},
    {22, "Bangkok", "Thailand", "TH", "Bangkok", {13.75, 100.50}, "Asia/Bangkok", 5'100'000},
    {23, "Singapore", "Singapore", "SG", "", {1.29, 103.85}, "Asia/Singapore", 5'600'000},
    {24, "Beijing", "China", "CN", "Beijing", {39.91, 116.40}, "Asia/Shanghai", 18'900'000},
    {25, "Tokyo", "Japan", "JP", "Tokyo", {35.69, 139.69}, "Asia/Tokyo", 9'700'000},
    {26, "Sydney", "Australia", "AU", "New South Wales", {-33.87, 151.21}, "Australia/Sydney", 4'600'000},
    {27,
     "Lord Howe Island",
     "Australia",
     "AU",
     "New South Wales",
     {-31.55, 159.08},
     "Australia/Lord_Howe",
     380},
    {28, "Auckland", "New Zealand", "NZ", "Auckland", {-36.85, 174.76}, "Pacific/Auckland", 1'400'000},
    {29, "Apia", "Samoa", "WS", "Tuamasaga", {-13.83, -171.77}, "Pacific/Apia", 40'000},
    {30, "Honolulu", "United States", "US", "Hawaii", {21.31, -157.86}, "Pacific/Honolulu", 370'000},
    {31, "Anchorage", "United States", "US", "Alaska", {61.22, -149.90}, "America/Anchorage", 290'000},
    {32, "Denver", "United States", "US", "Colorado", {39.74, -104.98}, "America/Denver", 700'000},
    {33, "Chicago", "United States", "US", "Illinois", {41.85, -87.65}, "America/Chicago", 2'700'000},
    {34, "New York", "United States", "US", "New York", {40.71, -74.01}, "America/New_York", 8'200'000},
    {35, "Miami", "United States", "US", "Florida", {25.77, -80.19}, "America/New_York", 440'000},
    {36, "Mexico City", "Mexico", "MX", "Mexico City", {19.43, -99.13}, "America/Mexico_City", 12'300'000},
    {37, "Bogotá", "Colombia", "CO", "Bogotá", {4.61, -74.08}, "America/Bogota", 7'700'000},
    {38, "São Paulo", "Brazil", "BR", "São Paulo", {-23.55, -46.64}, "America/Sao_Paulo", 10'000'000},
    {39,
     "Ushuaia",
     "Argentina",
     "AR",
     "Tierra del Fuego",
     {-54.80, -68.30},
     "America/Argentina/Ushuaia",
     57'000},
    {40, "St. John's", "Canada", "CA", "Newfoundland", {47.56, -52.71}, "America/St_Johns", 110'000},
};

std::string searchForm(std::string_view name) {
  return asciiLowered(asciiFolded(trimmed(name)));
}

}  // namespace

std::span<DemoPlace const> demoPlaces() {
  return kPlaces;
}

std::string demoTimeZone(Coordinate place) {
  std::string_view const zone = timeZoneAt(place);
  return zone.empty() ? "Etc/GMT" : std::string(zone);
}

std::vector<DemoPlace const*> findDemoPlaces(std::string_view name, std::size_t count) {
  std::string const wanted = searchForm(name.substr(0, name.find(',')));
  std::vector<DemoPlace const*> found;
  for (DemoPlace const& place : kPlaces) {
    if (wanted.size() > 1 && searchForm(place.name).starts_with(wanted)) found.push_back(&place);
  }
  std::ranges::stable_sort(found, std::ranges::greater{}, &DemoPlace::population);
  if (found.size() > count) found.resize(count);
  return found;
}

}  // namespace nimbara
