#include "app/services/world_hazards.h"

#include "app/services/feed_services.h"
#include "feeds/storms/tropical_storm_service.h"
#include "feeds/storms/typhoon_service.h"

namespace nimbara {

FeedReading<WorldStorms> fetchWorldStorms(FeedServices& feeds, std::stop_token const& stop, Waiting waiting) {
  FeedReading<std::vector<TropicalStorm>> nhc, jtwc, gdacs;
  runAll({[&] { nhc = feeds.tropicalStorms().fetchStorms(stop); },
          [&] { jtwc = feeds.typhoons().fetchStorms(stop); },
          [&] { gdacs = feeds.gdacsStorms().fetchStorms(stop); }},
         waiting);
  return worldStorms(std::move(nhc), jtwc, gdacs);
}

}  // namespace nimbara
