// What the suppliers of radar pictures would answer, drawn from the generated weather: the map services of
// NOAA and of the German weather service, tiles of the Iowa Mesonet and of Japan, and the lists with paths of
// LibreWXR and RainViewer. Some frames are kept for each, and none is drawn that no list has.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// "/geoserver/conus/conus_bref_qcd/ows" and those of the German weather service: capabilities and pictures.
/// A time that is not listed gives a transparent picture.
DemoAnswer noaaRadar(DemoRequest const& request, Instant now);
DemoAnswer dwdRadar(DemoRequest const& request, Instant now);
/// "/cache/tile.py/1.0.0/nexrad-n0q-900913-m05m/5/6/12.png".
DemoAnswer mesonetTile(DemoRequest const& request, Instant now);
/// "/bosai/jmatile/data/nowc/…": both lists, and tiles of even zooms.
DemoAnswer jmaTimes(DemoRequest const& request, Instant now);
DemoAnswer jmaTile(DemoRequest const& request, Instant now);
/// "/libreWxr/…" and "/rainViewer/…": list, tiles, and tiles of where there is no radar. RainViewer's paths
/// are hashes, and beyond zoom 7 its tiles say in writing that there are none.
DemoAnswer radarMaps(DemoRequest const& request, Instant now);
DemoAnswer radarMapTile(DemoRequest const& request, Instant now);
DemoAnswer radarCoverage(DemoRequest const& request, Instant now);

}  // namespace nimbara
