#include "demo/feeds/feed_server_stand_in.h"

#include "demo/feeds/satellites_stand_in.h"
#include "demo/feeds/usgs_stand_in.h"

#include <algorithm>

namespace nimbara {

namespace {

struct Feed {
  std::string_view name;
  DemoStandIn answer;
};

constexpr Feed kFeeds[] = {
    {"quakes", usgsDayFeed},
    {"satellites", satelliteFeed},
};

}  // namespace

DemoAnswer feedServerFeed(DemoRequest const& request, Instant now) {
  auto const feed = std::ranges::find(kFeeds, request.query("f"), &Feed::name);
  if (feed == std::ranges::end(kFeeds)) return {400, "no such feed\n", {}};
  return feed->answer(request, now);
}

}  // namespace nimbara
