#include "feeds/alerts/cap_where.h"

#include "base/text/text.h"
#include "feeds/cap/shape_geometry.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Whose service warns for which other lands: territories, and islands without a service of their own.
struct ServedLands {
  std::string_view issuer;
  std::string_view lands;
};
constexpr ServedLands kServedLands[] = {
    {"AG", "AI KN MS VG"},
    {"AU", "CC CX HM NF"},
    {"CH", "LI"},
    {"CW", "AW BQ SX"},
    {"DK", "FO GL"},
    {"ES", "AD EA IC"},
    {"FI", "AX"},
    {"FJ", "CK KI NR NU PN TK TV WF"},
    {"FR", "AD BL GF GP MC MF MQ NC PF PM RE TF WF YT"},
    {"GB", "AC BM FK GG GI GS IM IO JE KY PN SH TA TC VG"},
    {"IT", "SM VA"},
    {"NL", "AW BQ CW SX"},
    {"NO", "BV SJ"},
    {"NZ", "CK NU PN TK WS"},
    {"US", "AS FM GU MH MP PR PW UM VI"},
};

bool isServed(std::string_view issuer, std::string_view place) {
  auto const* const row = std::ranges::find(kServedLands, issuer, &ServedLands::issuer);
  return row != std::end(kServedLands) && row->lands.contains(place);
}

Whereabouts allOf(std::vector<CapArea> const& areas, Reach reach, double km = 0) {
  Whereabouts where{reach, km, {}};
  for (CapArea const& area : areas) where.areas.push_back({&area, km});
  return where;
}

/// By the shapes of the areas alone.
Whereabouts byShapes(std::vector<CapArea> const& areas, Coordinate place) {
  Whereabouts where;
  for (CapArea const& area : areas) {
    auto const km = isDrawn(area) ? kmTo(area, place, kNearWarningKm) : std::nullopt;
    if (!km) continue;
    Reach const reach = *km == 0 ? Reach::here : Reach::near;
    if (reach < where.reach) continue;
    if (reach > where.reach) where = {reach, *km, {}};
    where.km = std::min(where.km, *km);
    where.areas.push_back({&area, *km});
  }
  return where;
}

Whereabouts byOutline(std::vector<CapArea> const& areas, CapMessage const& message, Coordinate place) {
  CapArea outline;
  outline.polygons = message.outline;
  auto const km = kmTo(outline, place, kNearWarningKm);
  if (!km) return {};
  return allOf(areas, *km == 0 ? Reach::here : Reach::near, *km);
}

Whereabouts unjudged(std::vector<CapArea> const& areas, CapMessage const& message, Coordinate place) {
  if (std::ranges::any_of(areas, isDrawn)) {
    Whereabouts where = byShapes(areas, place);
    if (where.reach == Reach::here || !message.isHit) return where;
    // The source may have found the place in an area that the message only names.
    Whereabouts named{Reach::here, 0, {}};
    for (CapArea const& area : areas) {
      if (!isDrawn(area)) named.areas.push_back({&area, 0});
    }
    return named.areas.empty() ? where : named;
  }
  if (message.isHit) return allOf(areas, Reach::here);
  if (!message.outline.empty()) return byOutline(areas, message, place);
  return allOf(areas, Reach::unplaced);
}

}  // namespace

Whereabouts whereaboutsOf(std::vector<CapArea> const& drawn, CapMessage const& message, CapView const& view) {
  Whereabouts where = unjudged(drawn, message, view.place);
  if (where.reach == Reach::elsewhere || where.reach == Reach::near) return where;
  bool const isForeign = !isOwnIssuer(message.country, view.countryCode);
  if (where.reach == Reach::unplaced && (isForeign || view.countryCode.empty())) return {};
  if (where.reach == Reach::here && isForeign) where.reach = Reach::near;
  return where;
}

bool drawsAnything(CapInfo const& info) {
  return std::ranges::any_of(info.areas, isDrawn);
}

bool isOwnIssuer(std::string_view issuerCountry, std::string_view placeCountry) {
  std::string const issuer = asciiUppered(issuerCountry);
  std::string const place = asciiUppered(placeCountry);
  return issuer.empty() || place.empty() || issuer == place || isServed(issuer, place);
}

}  // namespace nimbara
