// Two suppliers of radar pictures for the whole world, and that of Germany, as a test wants them.
#pragma once

#include "desktop/imagery/radar/radar_sources.h"
#include "feeds/imagery/radar/radar_service.h"
#include "feeds/imagery/tile_service.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/map_host.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <string>

namespace nimbara::test {

inline std::string bytesOf(QImage const& picture) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  picture.save(&buffer, "PNG");
  return buffer.data().toStdString();
}

inline std::string pictureOf(QColor const& colour, int side = 512) {
  QImage picture(side, side, QImage::Format_ARGB32);
  picture.fill(colour);
  return bytesOf(picture);
}

/// Lists of three measured frames, and of one forecast where the first is asked; it rains everywhere, and
/// there is radar everywhere.
struct RadarHosts {
  RadarHosts() {
    host.answer("libre.example/public", 200,
                R"({"host":"https://libre.example","radar":{"past":[)"
                R"({"time":1795340400,"path":"/v2/radar/1"},{"time":1795341000,"path":"/v2/radar/2"},)"
                R"({"time":1795341600,"path":"/v2/radar/3"}],)"
                R"("nowcast":[{"time":1795342200,"path":"/v2/radar/4"}]}})");
    host.answer("viewer.example/public", 200,
                R"({"host":"https://viewer.example","radar":{"past":[)"
                R"({"time":1795341600,"path":"/v2/radar/0a"}]}})");
    host.answer("libre.example/v2/radar", 200, pictureOf(kRaw));
    host.answer("viewer.example/v2/radar", 200, pictureOf(kBlue));
    host.answer("/v2/coverage", 200, pictureOf(Qt::transparent, 256));
  }

  RadarSources sources() { return {always(radar), always(tiles)}; }

  /// 24 dBZ as a bare value, which is more than a millimetre; and what it is coloured.
  static constexpr QColor kRaw{112, 112, 112};
  static constexpr QColor kOurs{0x36, 0x5c, 0x8d};
  static constexpr QColor kBlue{0x00, 0x77, 0xaa}, kBluesOurs{0x46, 0x33, 0x7e};

  MapHost host;
  ManualClock clock{at("2026-11-22T10:07:00Z")};
  ImageryRequests requests{host, clock};
  RadarService radar{requests,
                     clock,
                     {{RadarSource::dwd, "https://dwd.example"},
                      {RadarSource::jma, "https://jma.example"},
                      {RadarSource::libreWxr, "https://libre.example"},
                      {RadarSource::rainViewer, "https://viewer.example"}}};
  TileService tiles{requests, clock, {}};
};

}  // namespace nimbara::test
