#include "desktop/views/map/map_stations.h"

#include "app/words/station_text.h"
#include "base/text/number.h"
#include "base/words/list_text.h"
#include "desktop/views/stations/station_view.h"
#include "feeds/stations/station_overlay.h"

#include <algorithm>

namespace nimbara {

std::vector<MapStation> mapStations(StationDesk const& desk, ViewContext const& context) {
  std::vector<MapStation> marks;
  if (!desk.around) return marks;
  StationsAround const& around = *desk.around;
  for (StationReading const& station : around.stations.nearest) {
    auto const stands = station.place();
    if (!stands) continue;
    StationRowView row = publicStationView(desk, station, *stands, context);
    MapStation& mark = marks.emplace_back();
    mark.id = station.id;
    mark.at = *stands;
    auto const celsius = measuredNow(station, StationQuantity::temperature, context.now);
    if (celsius) mark.value = valueText(StationQuantity::temperature, celsius->value, context.units);
    bool const isOutlier = std::ranges::count(around.stations.outliers, station.id) > 0;
    mark.isLeftOut = !celsius || isOutlier;
    mark.title = row.values.empty() ? context.text("station.silent") : std::move(row.values);
    mark.note = std::move(row.name);
    appendClause(mark.note, row.detail, context.texts);
    if (isOutlier) appendClause(mark.note, context.text("desktop.map.station.leftOut"), context.texts);
  }
  return marks;
}

std::string mapStationsNote(StationDesk const& desk, ViewContext const& context) {
  if (desk.task == StationTask::around) return context.text("desktop.sources.state.checking");
  if (!desk.around) return {};
  PublicStations const& all = desk.around->stations;
  auto const median = measuredNow(all.reading, StationQuantity::temperature, context.now);
  if (!median) return publicStationsText(desk, context);
  std::string const distance = measured(fixedDecimal(convert(all.withinKm, context.units.distance), 1),
                                        symbol(context.units.distance));
  return context.texts.format("desktop.map.stations.median",
                              valueText(StationQuantity::temperature, median->value, context.units), all.used,
                              distance, all.leftOut);
}

}  // namespace nimbara
