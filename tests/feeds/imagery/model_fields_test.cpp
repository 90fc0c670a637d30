#include "feeds/imagery/model_fields.h"

#include "feeds/imagery/model_field_service.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;
using testing::StartsWith;

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

struct GridRow {
  char const* name;
  Coordinate centre;
  double zoom;
};

TEST(ModelGrids, CoverTheViewWithFewPoints) {
  for (GridRow const& row : {GridRow{"europe", {50, 10}, 5}, GridRow{"world", {20, 0}, 2},
                             GridRow{"dateLine", {-17, 180}, 6}, GridRow{"beforeIt", {-17, -179.9}, 9},
                             GridRow{"north", {80, 20}, 3}, GridRow{"street", {52.5, 13.4}, 12}}) {
    SCOPED_TRACE(row.name);
    for (auto const& [width, height] :
         {std::pair(1280, 800), std::pair{400, 900}, std::pair{2560, 300}, std::pair{1, 1}}) {
      MapView const view = bounded({mercatorOf(row.centre), row.zoom, width, height});
      ModelGrid const grid = modelGridFor(view);
      EXPECT_LE(grid.columns, ModelGrid::kMostColumns);
      EXPECT_LE(grid.rows, ModelGrid::kMostRows);
      std::vector<float> const values(grid.size(), 1);
      double const side = std::min<double>(width, view.worldSide());
      for (double const x : {0.5, side / 2, side - 0.5}) {
        for (double const y : {0.5, height / 2.0, height - 0.5}) {
          Coordinate const place = coordinateOf(pointAt(view, {x, y}));
          if (std::abs(place.latitude) < 84) EXPECT_TRUE(fieldAt(values, grid, place)) << width << " " << x;
        }
      }
      for (int column = 0; column < grid.columns; ++column) {
        EXPECT_GE(grid.at(0, column).longitude, -180);
        EXPECT_LT(grid.at(0, column).longitude, 180);
      }
    }
  }
}

TEST(ModelGrid, IsTheSameForAViewBeside) {
  MapView const view{mercatorOf({51.2, 12.2}), 6, 1000, 700};
  EXPECT_EQ(modelGridFor(view), modelGridFor(panned(view, 20, 10)));
}

TEST(ModelFields, AskForAllPointsAtOnce) {
  ModelGrid const grid{175, 10, 5, 10, 3, 2};
  EXPECT_THAT(modelFieldsPath(grid),
              StartsWith("/v1/forecast?latitude=10.00,10.00,10.00,0.00,0.00,0.00&"
                         "longitude=175.00,-180.00,-175.00,175.00,-180.00,-175.00&hourly=temperature_2m,"));
  EXPECT_THAT(modelFieldsPath(grid, "secret"), HasSubstr("&apikey=secret"));
}

struct ValueRow {
  char const* name;
  Coordinate place;
  std::optional<double> value;
};

/// Three columns across the 180th meridian, two rows; the south-eastern point is not known.
TEST(FieldValues, LieBetweenThePoints) {
  for (ValueRow const& row :
       {ValueRow{"corner", {10, 170}, 0}, ValueRow{"edge", {10, 175}, 5}, ValueRow{"inside", {5, 175}, 55},
        ValueRow{"south", {0, 170}, 100}, ValueRow{"meridian", {10, 180}, 10},
        ValueRow{"sameMeridian", {10, -180}, 10}, ValueRow{"beyondIt", {10, -175}, 15},
        ValueRow{"lastColumn", {10, -170}, 20}, ValueRow{"besideTheHole", {5, 180}, 60},
        ValueRow{"inTheHole", {5, -175}, {}}, ValueRow{"theHole", {0, -170}, {}},
        ValueRow{"north", {10.1, 175}, {}}, ValueRow{"south2", {-0.1, 175}, {}},
        ValueRow{"west", {5, 169.9}, {}}, ValueRow{"east", {5, -169.9}, {}}}) {
    SCOPED_TRACE(row.name);
    ModelGrid const grid{170, 10, 10, 10, 3, 2};
    std::vector<float> const values{0, 10, 20, 100, 110, kNone};
    auto const value = fieldAt(values, grid, row.place);
    ASSERT_EQ(value.has_value(), row.value.has_value());
    if (value) EXPECT_NEAR(*value, *row.value, 1e-6);
  }
}

char const kTwo[] =
    R"([{"hourly":{"time":[1795341600,1795345200],"temperature_2m":[1.5,null],"precipitation":[0,2],)"
    R"("pressure_msl":[1000,1001],"wind_speed_10m":[10,20],"wind_direction_10m":[270,180]}},)"
    R"({"hourly":{"time":[1795345200,1795341600],"temperature_2m":[4,3]}}])";

TEST(ModelFields, AreReadWithTheirHoles) {
  auto const fields = parseModelFields(kTwo, {0, 0, 1, 1, 2, 1});
  ASSERT_TRUE(fields) << fields.error().text();
  ASSERT_EQ(fields->times.size(), 2U);
  EXPECT_EQ(fields->hours[0].temperature, (std::vector<float>{1.5F, 3}));
  EXPECT_TRUE(std::isnan(fields->hours[1].temperature[0]));
  EXPECT_EQ(fields->hours[1].temperature[1], 4);
  EXPECT_TRUE(std::isnan(fields->hours[0].pressure[1]));
  // From the west is towards the east.
  EXPECT_NEAR(fields->hours[0].windEast[0], 10, 1e-4);
  EXPECT_NEAR(fields->hours[1].windNorth[0], 20, 1e-4);
  EXPECT_EQ(hourNear(*fields, fields->times[0] + std::chrono::minutes(29)), 0U);
  EXPECT_EQ(hourNear(*fields, fields->times[0] + std::chrono::minutes(31)), 1U);
}

TEST(ModelFields, OtherAnswersAreErrors) {
  ModelGrid const grid{0, 0, 1, 1, 3, 1};
  for (char const* const body :
       {kTwo, "", "[]", "<html>", R"([{},{},{}])", R"([{"hourly":{"time":[]}},{},{}])"})
    EXPECT_FALSE(parseModelFields(body, grid)) << body;
  auto const refused = parseModelFields(R"({"error":true,"reason":"too many"})", grid);
  EXPECT_THAT(refused.error().text(), HasSubstr("too many"));
}

TEST(Contours, OfAPlaneAreALine) {
  constexpr int kColumns = 5, kRows = 4;
  std::vector<float> plane;
  for (int row = 0; row < kRows; ++row)
    for (int column = 0; column < kColumns; ++column)
      plane.push_back(static_cast<float>(10 * column + 5 * row));
  auto const pieces = contour(plane, kColumns, 17);
  EXPECT_FALSE(pieces.empty());
  for (ContourPiece const& piece : pieces) {
    EXPECT_NEAR(10 * piece.from.x + 5 * piece.from.y, 17, 1e-9);
    EXPECT_NEAR(10 * piece.to.x + 5 * piece.to.y, 17, 1e-9);
  }
  EXPECT_TRUE(contour(plane, kColumns, -1).empty());
  EXPECT_TRUE(contour(plane, kColumns, 56).empty());
  EXPECT_EQ(contour({0, 10, 0, 10}, 2, 5).size(), 1U);
  EXPECT_EQ(contour({0, 10, 10, 0}, 2, 5).size(), 2U);
  EXPECT_TRUE(contour({0, 10, 0, kNone}, 2, 5).empty());
  EXPECT_TRUE(contour({}, 0, 5).empty());
}

TEST(ModelFieldService, AsksOnceAnHourAndGridAndLeavesAFailureAlone) {
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-22T10:07:00Z")};
  ImageryRequests requests{http, clock};
  test::TemporaryFolder folder;
  ModelFieldService service{requests, clock, {"https://model.example", "", folder.path()}};
  ModelGrid const grid{0, 0, 1, 1, 2, 1};
  http.willAnswer(200, kTwo);
  ASSERT_TRUE(service.fetch(grid));
  EXPECT_TRUE(service.fetch(grid));
  ModelFieldService other{requests, clock, {"https://model.example", "", folder.path()}};
  EXPECT_TRUE(other.fetch(grid));
  EXPECT_EQ(http.requests.size(), 1U);
  clock.advance(std::chrono::minutes(53));
  http.willAnswer(429, "");
  EXPECT_EQ(service.fetch(grid).error().status, 429);
  clock.advance(ModelFieldService::kRestAfterFailure - std::chrono::milliseconds(1));
  EXPECT_FALSE(service.fetch(grid));
  EXPECT_EQ(http.requests.size(), 2U);
  clock.advance(std::chrono::milliseconds(1));
  http.willAnswer(200, kTwo);
  EXPECT_TRUE(service.fetch(grid));
}

}  // namespace
}  // namespace nimbara
