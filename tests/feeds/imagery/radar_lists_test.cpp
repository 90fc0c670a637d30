#include "feeds/imagery/radar/radar_lists.h"

#include "support/answers/bad_bytes.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::minutes;
using test::at;
using testing::EndsWith;
using testing::HasSubstr;

constexpr char kNow[] = "2026-11-22T10:07:00Z";
constexpr char kBase[] = "https://service.example";

ListContext context(RadarSource source, char const* now = kNow) {
  return {supplierOf(source), kBase, at(now)};
}

/// "09:55 10:00+ …": the clock times of the frames, forecasts with a plus.
std::string timesOf(FrameList const& list) {
  std::string text;
  for (RadarFrame const& frame : list.frames)
    text +=
        (text.empty() ? "" : " ") + formatIso8601(frame.time).substr(11, 5) + (frame.isForecast ? "+" : "");
  return text;
}

std::string layer(std::string const& dimensions, std::string const& name = "conus_bref_qcd") {
  return "<WMS_Capabilities><Capability><Layer><Name>all</Name><Dimension name=\"time\">2020-01-01T00:00:00Z"
         "</Dimension><Layer><Name>" +
         name + "</Name><Style><Name>conus_bref_qcd</Name></Style>" + dimensions +
         "</Layer></Layer></Capability></WMS_Capabilities>";
}

std::string times(std::string const& text) {
  return "<Dimension name=\"time\" default=\"x\">" + text + "</Dimension>";
}

struct ListRow {
  char const* name;
  RadarSource source;
  std::string body, forecast;
  std::string expected;  ///< the times, or a part of the error
};

std::string maps(std::string const& past, std::string const& host = "https://tilecache.rainviewer.com") {
  return R"({"host":")" + host + R"(","radar":{"past":[)" + past +
         R"(],"nowcast":[{"time":1795342800,"path":"/v2/radar/f"}]}})";
}

constexpr char kEntry[] = R"({"time":1795341600,"path":"/v2/radar/a1"})";  // 10:00

TEST(RadarLists, GiveTheFramesOrSayWhyNot) {
  for (
      ListRow const& row :
      {ListRow{"times", RadarSource::noaa,
               layer(times("2026-11-22T09:58:11.000Z,2026-11-22T10:00:10.000Z, 2026-11-22T10:04:12Z")), "",
               "10:00 10:04"},
       ListRow{"qualified", RadarSource::noaa, layer(times("2026-11-22T10:00:00Z"), "conus:conus_bref_qcd"),
               "", "10:00"},
       ListRow{"period", RadarSource::noaa, layer(times("2026-11-22T08:00:00Z/2026-11-22T10:05:00Z/PT15M")),
               "", "09:00 09:15 09:30 09:45 10:00"},
       ListRow{"reference", RadarSource::dwd,
               layer("<Dimension name=\"REFERENCE_TIME\" default=\"2026-11-22T10:00:00Z\"/>" +
                         times("2026-11-22T09:50:00Z/2026-11-22T10:15:00Z/PT5M"),
                     "Niederschlagsradar"),
               "", "09:50 09:55 10:00 10:05+ 10:10+ 10:15+"},
       ListRow{"noTimes", RadarSource::noaa, layer(times(" ")), "", "the layer has no times"},
       ListRow{"otherLayer", RadarSource::noaa, layer(times("2026-11-22T10:00:00Z"), "other"), "",
               "it has no layer conus_bref_qcd"},
       ListRow{"oldTimes", RadarSource::noaa, layer(times("2026-11-22T08:06:59Z")), "",
               "its newest time is 2026-11-22T08:06:59Z"},
       ListRow{"oldestTimes", RadarSource::noaa, layer(times("2026-11-22T08:07:00Z")), "", "08:07"},
       ListRow{"loginPage", RadarSource::noaa, "<html><p>log in", "", "line 1"},
       ListRow{"maps", RadarSource::rainViewer, maps(kEntry), "", "10:00 10:20+"},
       ListRow{"ownServer", RadarSource::libreWxr, maps(kEntry, "https://service.example"), "",
               "10:00 10:20+"},
       ListRow{"emptyMaps", RadarSource::rainViewer, maps(""), "", "it has no times"},
       ListRow{"foreignHost", RadarSource::rainViewer, maps(kEntry, "https://rainviewer.com.example"), "",
               "/host"},
       ListRow{"plainHost", RadarSource::rainViewer, maps(kEntry, "http://tilecache.rainviewer.com"), "",
               "/host"},
       ListRow{
           "wrongPaths", RadarSource::rainViewer,
           maps(
               R"({"time":1795341600,"path":"/../etc"},{"time":1795341600,"path":"/a?b={x}"},{"time":1795341600},7)"),
           "", "it has no times"},
       ListRow{"targets", RadarSource::jma,
               R"([{"basetime":"20261122100500","validtime":"20261122100500","elements":["hrpns","amds"]},
                    {"basetime":"20261122100000","validtime":"20261122100000"},
                    {"basetime":"20261122095500","validtime":"20261122095500","elements":["thns"]}, 5, {}])",
               R"([{"basetime":"20261122100500","validtime":"20261122101000","elements":["hrpns"]}])",
               "10:00 10:05 10:10+"},
       ListRow{"noForecast", RadarSource::jma,
               R"([{"basetime":"20261122100500","validtime":"20261122100500"}])", "<html>", "10:05"},
       ListRow{"noDigits", RadarSource::jma,
               R"([{"basetime":"2026112210050x","validtime":"20261122100500"}])", "", "it has no times"}}) {
    SCOPED_TRACE(row.name);
    auto const list = readFrameList(context(row.source), row.body, row.forecast);
    EXPECT_THAT(list ? timesOf(*list) : list.error().text(), HasSubstr(row.expected)) << row.name;
  }
}

TEST(RadarLists, TakeHostAndPathFromTheRecordedList) {
  auto const files = test::sampleFiles("rainviewer");
  if (!files) GTEST_SKIP() << "no recorded answers";
  std::string const body = test::readFile(files->front());
  auto const list = readFrameList(context(RadarSource::rainViewer, "2026-10-01T01:45:26Z"), body);
  ASSERT_TRUE(list) << list.error().text();
  ASSERT_EQ(list->frames.size(), 7U);  // the last hour
  EXPECT_EQ(list->host, "https://tilecache.rainviewer.com");
  EXPECT_EQ(pictureAddress(list->frames.back().address, {{7, 67, 42}}),
            "https://tilecache.rainviewer.com/v2/radar/bcf5f246d1f9/512/7/67/42/2/1_1.png");
}

TEST(RadarLists, CountFromTheNewestOfTheMesonet) {
  FrameList const list = framesByOffsets(context(RadarSource::iowaMesonet));
  EXPECT_EQ(timesOf(list), "09:10 09:15 09:20 09:25 09:30 09:35 09:40 09:45 09:50 09:55 10:00 10:05");
  EXPECT_THAT(list.frames.front().address, HasSubstr("/nexrad-n0q-900913-m55m/{z}/{x}/{y}.png"));
  EXPECT_THAT(list.frames[10].address, HasSubstr("/nexrad-n0q-900913-m05m/{z}"));
  EXPECT_THAT(list.frames.back().address, HasSubstr("/nexrad-n0q-900913/{z}"));
}

TEST(RadarLists, AskAMapServiceForTheEdgesOfSquaresSideBySide) {
  auto const list = readFrameList(context(RadarSource::noaa), layer(times("2026-11-22T10:00:00Z")));
  ASSERT_TRUE(list);
  EXPECT_THAT(pictureAddress(list->frames[0].address, {{1, 0, 0}, 1, 1, 512}),
              EndsWith("&crs=EPSG:3857&bbox=-20037508.343,0.000,0.000,20037508.343&width=512&height=512"
                       "&format=image/png&transparent=true&time=2026-11-22T10:00:00Z"));
  EXPECT_THAT(pictureAddress(list->frames[0].address, {{2, 0, 1}, 3, 2}),
              HasSubstr("&bbox=-20037508.343,-10018754.171,10018754.171,10018754.171&width=768&height=512&"));
}

TEST(RadarLists, SurviveAnyBytes) {
  for (RadarSupplier const& supplier : radarSuppliers()) {
    for (std::string const& bytes : test::damagedForms(maps(kEntry), 7))
      static_cast<void>(readFrameList(context(supplier.source), bytes, bytes));
  }
}

TEST(RadarSuppliers, ServeATileWithWhatTheyHave) {
  struct Row {
    RadarSource source;
    TileAddress tile, picture;
  };
  for (Row const& row : {Row{RadarSource::rainViewer, {7, 67, 42}, {6, 33, 21}},
                         {RadarSource::rainViewer, {8, 135, 85}, {7, 67, 42}},
                         {RadarSource::rainViewer, {10, 540, 340}, {7, 67, 42}},
                         {RadarSource::libreWxr, {6, 33, 21}, {5, 16, 10}},
                         {RadarSource::libreWxr, {12, 4095, 0}, {11, 2047, 0}},
                         {RadarSource::jma, {7, 113, 50}, {6, 56, 25}},
                         {RadarSource::jma, {6, 56, 25}, {6, 56, 25}},
                         {RadarSource::jma, {3, 7, 3}, {4, 14, 6}}})
    EXPECT_EQ(servedBy(supplierOf(row.source), row.tile), row.picture) << row.tile.zoom;
}

struct WantedRow {
  char const* name;
  RadarSource source;
  MapView view;
  std::size_t most;
  int zoom;
  std::size_t atMost;  ///< pictures
};

constexpr MapView over(double x, double y, double zoom, int width, int height) {
  return {{x, y}, zoom, width, height};
}

TEST(WantedPictures, AreFewAndCoverTheView) {
  for (WantedRow const& row :
       {WantedRow{"GermanyInOne", RadarSource::dwd, over(0.528, 0.334, 7.2, 1280, 800), 99, 7, 1},
        WantedRow{"AmericaOnALargeScreen", RadarSource::noaa, over(0.24, 0.38, 7.2, 3840, 2160), 99, 6, 2},
        WantedRow{"BelowTheDeepest", RadarSource::dwd, over(0.537, 0.328, 12, 1280, 800), 99, 10, 1},
        WantedRow{"America", RadarSource::noaa, over(0.23, 0.38, 4.4, 1280, 800), 99, 4, 1},
        WantedRow{"JapanSharp", RadarSource::jma, over(0.888, 0.394, 8.2, 1280, 800), 99, 8, 30},
        WantedRow{"JapanCoarse", RadarSource::jma, over(0.888, 0.394, 8.2, 1280, 800), 8, 6, 8},
        WantedRow{"JapanHasNoneCoarser", RadarSource::jma, over(0.888, 0.394, 4.2, 1280, 800), 1, 4, 8},
        WantedRow{"TilesOfTheWorld", RadarSource::libreWxr, over(0.5, 0.34, 6.2, 1280, 800), 99, 5, 12},
        WantedRow{"TilesOfTheWorldCoarse", RadarSource::libreWxr, over(0.5, 0.34, 6.2, 1280, 800), 4, 4,
                  4}}) {
    SCOPED_TRACE(row.name);
    RadarSupplier const& supplier = supplierOf(row.source);
    auto const areas = picturesWanted(supplier, row.view, row.most);
    ASSERT_FALSE(areas.empty());
    EXPECT_LE(areas.size(), row.atMost);
    for (PictureArea const& area : areas) {
      EXPECT_EQ(area.first.zoom, row.zoom);
      EXPECT_LE(std::max(area.columns, area.rows) * area.pixels, 2048) << "no larger than is decoded";
    }
    auto const hasCentre = [&row](PictureArea const& area) {
      MapPoint const from = northWestOf(area), to = southEastOf(area), centre = row.view.centre;
      return from.x <= centre.x && to.x > centre.x && from.y <= centre.y && to.y > centre.y;
    };
    EXPECT_TRUE(std::ranges::any_of(areas, hasCentre));
  }
}

TEST(RadarSuppliers, AreAskedWhereTheyHaveRadars) {
  using enum RadarSource;
  using Sources = std::vector<RadarSource>;
  EXPECT_EQ(radarSourcesAt({39.74, -104.99}), (Sources{noaa, iowaMesonet, libreWxr, rainViewer}));
  EXPECT_EQ(radarSourcesAt({52.52, 13.4}), (Sources{dwd, libreWxr, rainViewer}));
  EXPECT_EQ(radarSourcesAt({35.68, 139.77}), (Sources{jma, libreWxr, rainViewer}));
  EXPECT_EQ(radarSourcesAt({-1.29, 36.82}), (Sources{libreWxr, rainViewer}));
  auto const onMap = [](Coordinate centre, double zoom) {
    return radarSourcesFor({mercatorOf(centre), zoom, 1200, 700});
  };
  EXPECT_EQ(onMap({51, 10.4}, 7), (Sources{dwd, libreWxr, rainViewer}));
  EXPECT_EQ(onMap({51, 10.4}, 5), (Sources{libreWxr, rainViewer, dwd})) << "Germany is little of it";
  EXPECT_EQ(onMap({52, 19}, 6), (Sources{libreWxr, rainViewer})) << "its centre is in Poland";
  EXPECT_EQ(onMap({39, -97}, 5), (Sources{noaa, iowaMesonet, libreWxr, rainViewer}));
  EXPECT_TRUE(mayHaveRain(supplierOf(dwd), {5, 17, 10}));
  EXPECT_FALSE(mayHaveRain(supplierOf(dwd), {5, 4, 10}));
}

TEST(RadarPalettes, RelateReflectivityAndRain) {
  EXPECT_NEAR(mmPerHourOf(23.0), 1.0, 0.01);
  EXPECT_NEAR(dBZOf(mmPerHourOf(47)), 47, 1e-9);
  EXPECT_EQ(rawReflectivity(0), std::nullopt);
  EXPECT_EQ(rawReflectivity(1), -31.5);
  EXPECT_EQ(rawValueOf(*rawReflectivity(110)), 110);
  EXPECT_EQ(ownColourOf(0.09), 0U);
  EXPECT_EQ(ownColourOf(0.1), 0x440154a0U);
  EXPECT_EQ(ownColourOf(80), 0xfde725ffU);
  for (std::size_t i = 0; i < enumNames<RadarPalette>.size(); ++i) {
    auto const legend = legendOf(static_cast<RadarPalette>(i));
    EXPECT_TRUE(std::ranges::is_sorted(legend, std::less_equal<>(), &LegendStop::mmPerHour)) << i;
  }
}

struct MeaningRow {
  char const* name;
  RadarPalette palette;
  std::uint32_t rgb;
  double mmPerHour, off;
};

TEST(ColourMeanings, AreThoseOfTheNearestInTheLegend) {
  for (MeaningRow const& row :
       {MeaningRow{"Exact", RadarPalette::dwd, 0xffc401, 7.5, 0},
        MeaningRow{"First", RadarPalette::jma, 0xf2f2ff, 0.1, 0},
        MeaningRow{"Last", RadarPalette::reflectivity, 0xf800fd, 205, 0},
        MeaningRow{"ALittleOff", RadarPalette::jma, 0x0041fc, 10, 3},
        MeaningRow{"OfStepsNeverBetween", RadarPalette::dwd, 0xfff001, 5, 15},
        MeaningRow{"OfARampHalfWay", RadarPalette::n0q, 0xffb100, 23.6, 0},
        MeaningRow{"OfABlendHalfWay", RadarPalette::universalBlue, 0x0088bb, 0.456, 0},
        MeaningRow{"Grey", RadarPalette::universalBlue, 0x808080, 1.737, 55.71}}) {
    SCOPED_TRACE(row.name);
    ColourMeaning const meaning = meaningOf(row.palette, row.rgb);
    EXPECT_NEAR(meaning.mmPerHour, row.mmPerHour, 0.01 * row.mmPerHour);
    EXPECT_NEAR(meaning.off, row.off, 0.1);
  }
}

}  // namespace
}  // namespace nimbara
