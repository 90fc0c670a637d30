#include "desktop/imagery/radar/radar_layer.h"

#include "desktop/offscreen.h"
#include "radar_hosts.h"

#include <gmock/gmock.h>

#include <atomic>
#include <deque>
#include <future>

namespace nimbara {
namespace {

using std::chrono::minutes;
using test::at;
using test::pictureOf;
using State = RadarProgress::State;

constexpr Coordinate kParis{48.86, 2.35}, kMadrid{40.4, -3.7}, kMitte{52.52, 13.4};

MapView viewOf(Coordinate centre, double zoom = 6) {
  return {mercatorOf(centre), zoom, 300, 200};
}

/// What says in every tile that there is none.
std::string writing() {
  QImage picture(512, 512, QImage::Format_ARGB32);
  picture.fill(Qt::transparent);
  for (int x = 40; x < 400; ++x) picture.setPixelColor(x, 200 + x % 7, QColor(0x80, 0x80, 0x80));
  return test::bytesOf(picture);
}

struct RadarLayerTest : testing::Test {
  /// The first of what is told that is so; the last of all where none is.
  template <class Is>
  RadarProgress until(Is const& is) {
    std::unique_lock lock(mutex_);
    RadarProgress last;
    while (told_.wait_for(lock, std::chrono::seconds(20), [this] { return !heard_.empty(); })) {
      last = std::move(heard_.front());
      heard_.pop_front();
      if (is(last)) return last;
    }
    ADD_FAILURE() << "nothing of the kind was told";
    return last;
  }
  RadarProgress untilState(State state) {
    return until([state](RadarProgress const& progress) { return progress.state == state; });
  }
  static int loadedOf(RadarProgress const& progress) {
    return static_cast<int>(std::ranges::count_if(progress.frames, &RadarProgress::Frame::isLoaded));
  }
  static QColor middleOf(RadarLayer const& layer, Instant frame) {
    auto const placed = layer.picture(frame);
    if (!placed) return {};
    QColor const colour = placed->picture.pixelColor(placed->picture.rect().center());
    return {colour.red(), colour.green(), colour.blue()};
  }

  std::mutex mutex_;
  std::condition_variable told_;
  std::deque<RadarProgress> heard_;
  test::RadarHosts hosts_;
  std::optional<RadarLayer> layer_{std::in_place, hosts_.sources(), [this](RadarProgress progress) {
                                     std::lock_guard const lock(mutex_);
                                     heard_.push_back(std::move(progress));
                                     told_.notify_all();
                                   }};
  Instant const newest_ = at("2026-11-22T10:00:00Z");
};

TEST_F(RadarLayerTest, LoadsTheNewestAndTheOthersWhenTheyArePlayed) {
  layer_->want({viewOf(kParis), {}, false});
  RadarProgress const first = untilState(State::shown);
  ASSERT_EQ(first.frames.size(), 4U);
  EXPECT_EQ(frameOf(first, {}), 2U);
  EXPECT_EQ(loadedOf(first), 1);
  EXPECT_FALSE(first.frames[2].isDry);
  EXPECT_NEAR(middleOf(*layer_, newest_).blue(), test::RadarHosts::kOurs.blue(), 3);
  EXPECT_EQ(hosts_.host.asked("/v2/radar/2"), 0U);
  layer_->want({viewOf(kParis), {}, true});
  RadarProgress const all = until([](RadarProgress const& progress) { return loadedOf(progress) == 4; });
  EXPECT_TRUE(all.frames.back().frame.isForecast);
  EXPECT_TRUE(layer_->picture(newest_ + minutes(10)));
  EXPECT_FALSE(layer_->picture(newest_ + minutes(20)));
}

TEST_F(RadarLayerTest, DropsAViewThatHasGone) {
  hosts_.host.hold("/v2/radar/3");
  layer_->want({viewOf(kParis), {}, false});
  ASSERT_TRUE(hosts_.host.wasAsked("/v2/radar/3"));
  layer_->want({viewOf(kMadrid), {}, false});
  hosts_.host.letGo();
  RadarProgress const shown = untilState(State::shown);
  EXPECT_EQ(shown.source, RadarSource::libreWxr) << "what was stopped is not the supplier's fault";
  EXPECT_THAT(shown.misses, testing::IsEmpty());
  auto const placed = layer_->picture(newest_);
  ASSERT_TRUE(placed);
  EXPECT_NEAR((placed->northWest.x + placed->southEast.x) / 2, mercatorOf(kMadrid).x, 1e-3);
}

TEST_F(RadarLayerTest, AsksForNothingWhileNobodyLooks) {
  hosts_.host.hold("/v2/");
  layer_->want({viewOf(kParis), {}, true});
  ASSERT_TRUE(hosts_.host.wasAsked("/v2/"));
  layer_->rest();
  hosts_.host.letGo();
  layer_.reset();
  std::lock_guard const lock(mutex_);
  EXPECT_EQ(hosts_.host.asked("/v2/radar"), 0U);
  EXPECT_TRUE(std::ranges::none_of(heard_, [](auto const& each) { return each.state == State::shown; }));
}

TEST_F(RadarLayerTest, TellsNobodyAfterItsEnd) {
  hosts_.host.hold("/v2/radar");
  layer_->want({viewOf(kParis), {}, false});
  ASSERT_TRUE(hosts_.host.wasAsked("/v2/radar"));
  layer_.reset();
  std::size_t const heard = heard_.size();
  hosts_.host.letGo();
  EXPECT_EQ(heard_.size(), heard);
}

TEST_F(RadarLayerTest, PutsTheNextInPlaceOfOneWhosePicturesAreOfNoUse) {
  for (auto const& [status, body] :
       {std::pair(403, std::string()), {429, ""}, {200, "<html>"}, {404, ""}, {200, writing()}}) {
    test::RadarHosts hosts;
    hosts.host.answer("libre.example/v2/radar", status, body);
    std::promise<RadarProgress> promise;
    std::atomic<bool> isDone = false;
    RadarLayer layer(hosts.sources(), [&](RadarProgress progress) {
      if (progress.state == State::shown && !isDone.exchange(true)) promise.set_value(std::move(progress));
    });
    layer.want({viewOf(kParis), {}, false});
    auto future = promise.get_future();
    ASSERT_EQ(future.wait_for(std::chrono::seconds(20)), std::future_status::ready) << status;
    RadarProgress const shown = future.get();
    EXPECT_EQ(shown.source, RadarSource::rainViewer) << status;
    ASSERT_EQ(shown.misses.size(), 1U) << status;
    EXPECT_EQ(shown.misses[0].source, RadarSource::libreWxr);
    EXPECT_NEAR(middleOf(layer, newest_).blue(), test::RadarHosts::kBluesOurs.blue(), 3) << status;
  }
}

TEST_F(RadarLayerTest, SaysThatNobodyCouldBeAsked) {
  hosts_.host.answer("/public", 500, "");
  layer_->want({viewOf(kMadrid), {}, false});
  EXPECT_EQ(untilState(State::failed).misses.size(), 2U);
}

TEST_F(RadarLayerTest, TellsDryFromUncovered) {
  hosts_.host.answer("libre.example/v2/radar", 200, pictureOf(Qt::transparent));
  layer_->want({viewOf(kParis), {}, false});
  EXPECT_TRUE(untilState(State::shown).frames[2].isDry);
  // Half of the view has no radar: what lies in the other half is shown.
  hosts_.host.answer("/v2/coverage", 200, pictureOf(Qt::black, 256));
  layer_->want({viewOf(kMadrid), {}, false});
  RadarProgress const none = untilState(State::none);
  EXPECT_THAT(none.misses, testing::IsEmpty());
  EXPECT_THAT(none.frames, testing::IsEmpty());
}

/// Measured for an hour and forecast for another, every five minutes.
std::string japaneseTimes(bool isForecast) {
  std::string list;
  for (int i = isForecast ? 1 : -12; i <= (isForecast ? 12 : 0); ++i) {
    std::string time = formatIso8601(at("2026-11-22T10:05:00Z") + i * minutes(5));
    std::erase_if(time, [](char c) { return c < '0' || c > '9'; });
    list += list.empty() ? "[" : ",";
    list += R"({"basetime":")" + (isForecast ? "20261122100500" : time) + R"(","validtime":")" + time +
            R"(","elements":["hrpns"]})";
  }
  return list + "]";
}

TEST_F(RadarLayerTest, PlaysTheStepOfAMapServiceWithOneRequestAFrame) {
  constexpr char kList[] =
      "<WMS_Capabilities><Capability><Layer><Name>Niederschlagsradar</Name>"
      "<Dimension name=\"REFERENCE_TIME\" default=\"2026-11-22T10:05:00Z\"/><Dimension name=\"time\">"
      "2026-11-22T09:05:00Z/2026-11-22T12:05:00Z/PT5M</Dimension></Layer></Capability></WMS_Capabilities>";
  hosts_.host.answer("dwd.example/geoserver/dwd/Niederschlagsradar", 200, kList);
  hosts_.host.answer("dwd.example/geoserver/dwd/wms", 200, pictureOf(QColor(0xff, 0xff, 0x01)));
  layer_->want({{mercatorOf({51, 10.2}), 7.2, 1280, 800}, {}, true, true});
  RadarProgress const all = until([](RadarProgress const& progress) {
    return !progress.frames.empty() && loadedOf(progress) == std::ssize(progress.frames);
  });
  ASSERT_EQ(all.frames.size(), 12U + 1U + 24U);
  EXPECT_EQ(all.frames[1].frame.time - all.frames[0].frame.time, minutes(5));
  EXPECT_EQ(hosts_.host.asked("dwd.example"), 1U + 37U) << "of sixty a minute";
  EXPECT_EQ(hosts_.host.asked("request=GetMap"), 37U);
}

TEST_F(RadarLayerTest, PlaysTilesCoarselyAndShowsThemSharplyAtRest) {
  constexpr Coordinate kTokyo{35.7, 139.7};
  hosts_.host.answer("targetTimes_N1", 200, japaneseTimes(false));
  hosts_.host.answer("targetTimes_N2", 200, japaneseTimes(true));
  int shade = 0;
  hosts_.host.answer("/surf/hrpns/", 200, [&shade](std::string const&) {
    return pictureOf(QColor(0xa0, 0xd2, ++shade % 256), 256);
  });
  MapView const view{mercatorOf(kTokyo), 8.2, 1280, 800};
  layer_->want({view, {}, true, true});
  RadarProgress const some = until([](RadarProgress const& progress) { return loadedOf(progress) == 5; });
  ASSERT_EQ(some.frames.size(), 25U);
  for (std::size_t i = 0; i < some.frames.size(); ++i)
    EXPECT_EQ(some.frames[i].isLoaded, i % 2 == 0 && i >= 8 && i <= 16)
        << i << ": those ten minutes apart first";
  EXPECT_EQ(hosts_.host.asked("/surf/hrpns/8/"), 0U);
  Instant const stopped = some.frames[10].frame.time;
  layer_->want({view, stopped, true, false});
  ASSERT_TRUE(hosts_.host.wasAsked("/surf/hrpns/8/"));
  hosts_.clock.advance(minutes(1));
  EXPECT_TRUE(
      until([&](RadarProgress const& progress) { return loadedOf(progress) >= 6; }).frames[10].isLoaded);
  EXPECT_TRUE(layer_->picture(stopped));
}

TEST(RadarComposition, HasAVeilWhereASupplierHasNoRadar) {
  RadarSupplier const& german = supplierOf(RadarSource::dwd);
  MapView const inside = viewOf(kMitte, 9), beside = viewOf({52.5, 20}, 9), edge = viewOf({52.5, 15.8}, 9);
  EXPECT_FALSE(coversAll(veilOf(inside, german, {}), inside));
  EXPECT_TRUE(coversAll(veilOf(beside, german, {}), beside));
  QImage const veil = veilOf(edge, german, {});
  QPoint const middle = veil.rect().center();
  EXPECT_EQ(qAlpha(veil.pixel(middle - QPoint(60, 0))), 0);
  EXPECT_GT(qAlpha(veil.pixel(middle + QPoint(60, 0))), 0);
}

TEST(RadarComposition, TakesTheMaskFromThePicturesOfOneThatDrawsIt) {
  RadarSupplier const& german = supplierOf(RadarSource::dwd);
  QImage grey(512, 512, QImage::Format_ARGB32);
  grey.fill(Qt::gray);
  PictureArea const tile{{5, 16, 10}};  // 0° to 11.25° E, 48.9° to 55.8° N
  QImage const clear = withoutMask(grey, tile, german);
  EXPECT_EQ(qAlpha(clear.pixel(20, 256)), 0);
  EXPECT_EQ(clear.pixelColor(500, 256), QColor(Qt::gray));
  QImage const wide = withoutMask(QImage(grey).scaled(1024, 512), {{5, 16, 10}, 2, 1}, german);
  EXPECT_EQ(qAlpha(wide.pixel(20, 256)), 0) << "3° east of two squares of 11.25°";
  EXPECT_EQ(wide.pixelColor(500, 256), QColor(Qt::gray));
  EXPECT_EQ(qAlpha(wide.pixel(1000, 256)), 0);
  EXPECT_EQ(withoutMask(grey, tile, supplierOf(RadarSource::rainViewer)), grey);
}

TEST(RadarFrames, AreThinnedFromThePresentOn) {
  std::vector<RadarFrame> frames;
  for (int minute = -20; minute <= 20; minute += 5)
    frames.push_back({at("2026-11-22T10:05:00Z") + minutes(minute), minute > 0, {}});
  std::string text;
  for (RadarFrame const& frame : thinned(frames, minutes(10)))
    text += formatIso8601(frame.time).substr(14, 2) + (frame.isForecast ? "+ " : " ");
  EXPECT_EQ(text, "45 55 05 15+ 25+ ");
  EXPECT_TRUE(thinned({}, minutes(10)).empty());
}

}  // namespace
}  // namespace nimbara
