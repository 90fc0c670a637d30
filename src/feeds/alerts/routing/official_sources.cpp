#include "feeds/alerts/routing/official_sources.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::minutes;

constexpr auto kSources = std::to_array<OfficialSource>({
    {.name = "nws",
     .service = "National Weather Service",
     .row = Service::nws,
     .rest = minutes(2),
     .takesArticle = true,
     .lacks = {"source.lacks.english"}},
    {.name = "meteoalarm",
     .service = "MeteoAlarm",
     .row = Service::meteoAlarm,
     .rest = minutes(5),
     .lacks = {"source.lacks.regions"}},
    {.name = "eccc",
     .service = "Environment and Climate Change Canada",
     .row = Service::eccc,
     .lacks = {"source.lacks.englishFrench"}},
    {.name = "metalerts",
     .service = "MET Norway",
     .row = Service::metAlerts,
     .lacks = {"source.lacks.englishNorwegian"}},
    {.name = "wmo",
     .service = "WMO Severe Weather Information Centre",
     .row = Service::wmoWarnings,
     .through = Through::wmo,
     .takesArticle = true,
     .lacks = {"source.lacks.countries", "source.lacks.shapes", "source.lacks.levels"}},
    {.name = "fpas",
     .service = "FOSS Public Alert Server",
     .row = Service::fpas,
     .through = Through::fpas,
     .takesArticle = true,
     .lacks = {"source.lacks.countries", "source.lacks.china", "source.lacks.levels", "source.lacks.trial"}},
    {.name = "brightsky",
     .service = "Deutscher Wetterdienst",
     .row = Service::brightSky,
     .lacks = {"source.lacks.floods", "source.lacks.englishGerman"}},
});

}  // namespace

std::span<OfficialSource const> officialSources() {
  return kSources;
}

OfficialSource const* officialSource(std::string_view name) {
  auto const* const row = std::ranges::find(kSources, name, &OfficialSource::name);
  return row == kSources.end() ? nullptr : row;
}

std::string namesOf(std::span<std::string_view const> sources) {
  std::string list;
  for (std::string_view const name : sources) list.append(list.empty() ? "" : ", ").append(name);
  return list;
}

}  // namespace nimbara
