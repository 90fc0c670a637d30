#include "feeds/fpas/fpas_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/cap/cap_issuer.h"
#include "feeds/cap/cap_reader.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/fpas/fpas_lists.h"
#include "regions/country_code.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Nowhere do so many hold at once; what is kept of each is looked up one by one.
constexpr std::size_t kMostAlerts = 500;
constexpr double kMarginDegrees = 0.001;
constexpr double kPole = 90;
constexpr double kDateLine = 180;

/// The server wants a box that has an extent and lies on the globe: at its rims the place's half of it does.
std::string boxAround(Coordinate place) {
  constexpr int kDecimals = 4;
  auto const text = [](double degrees, double most) {
    return fixedDecimal(std::clamp(degrees, -most, most), kDecimals);
  };
  return "min_lat=" + text(place.latitude - kMarginDegrees, kPole) +
         "&max_lat=" + text(place.latitude + kMarginDegrees, kPole) +
         "&min_lon=" + text(place.longitude - kMarginDegrees, kDateLine) +
         "&max_lon=" + text(place.longitude + kMarginDegrees, kDateLine);
}

/// The first failure is told.
void fail(CapListing& listing, ServiceFailure failure) {
  if (!listing.failure) listing.failure = std::move(failure);
}

bool drawsNothing(CapAlert const& alert) {
  return std::ranges::none_of(alert.infos, [](CapInfo const& info) {
    return std::ranges::any_of(
        info.areas, [](CapArea const& area) { return !area.polygons.empty() || !area.circles.empty(); });
  });
}

CapMessage messageOf(CapDocument document, std::string const& address) {
  CapMessage message;
  message.country = issuerCountry(*document);
  message.isHit = drawsNothing(*document);
  message.link = address;
  message.alert = std::move(document);
  return message;
}

/// The server's feeds are those of countries; nobody tells whether one of them warns of an open sea.
FpasCountries::Verdict const kNobodysSea{true, {}};

/// They become part of an address and of a file's name.
bool isTwoLetters(std::string_view country) {
  return country.size() == 2 && std::ranges::all_of(country, [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool hasAnyOf(CapListing const& listing, std::string const& country) {
  return std::ranges::any_of(listing.messages, [&](CapMessage const& message) {
    return message.country == country && message.alert->status == "Actual";
  });
}

}  // namespace

FpasService::FpasService(HttpClient& http, Clock const& clock, CapStore& documents, Options options)
    : http_(http),
      documents_(documents),
      baseUrl_(std::move(options.baseUrl)),
      countries_(http, clock,
                 baseUrl_ + "/sources/area_status?country_codes=", std::move(options.directory)) {}

CapListing FpasService::fetch(Coordinate place, std::string_view countryCode, std::stop_token const& stop) {
  CapListing listing;
  if (!isValid(place)) {
    fail(listing, ServiceFailure::of(ServiceFailure::Kind::noSuchPlace));
    return listing;
  }
  std::lock_guard const turn(turn_);
  auto const listed = addresses(place, listing, stop);
  CapDocuments found = documents_.documents(listed, stop);
  for (std::string const& address : listed) {
    auto const document = found.find(address);
    if (document != found.end()) listing.messages.push_back(messageOf(document->second, address));
  }
  if (std::size_t const missing = listed.size() - listing.messages.size(); missing > 0) {
    fail(listing, ServiceFailure::of(ServiceFailure::Kind::incomplete,
                                     std::to_string(missing) + " of the listed alerts could not be fetched"));
  }
  std::string const country = isoCountryCode(countryCode);
  if (listing.failure || hasAnyOf(listing, country)) return listing;
  auto verdict = isTwoLetters(country) ? countries_.judge(country, stop) : kNobodysSea;
  listing.isBlind = verdict.isBlind;
  listing.failure = std::move(verdict.failure);
  return listing;
}

/// Of the documents that the server lists for the place.
std::vector<std::string> FpasService::addresses(Coordinate place, CapListing& listing,
                                                std::stop_token const& stop) {
  constexpr int kOk = 200;
  constexpr std::chrono::seconds kTimeout{15};
  using enum ServiceFailure::Kind;
  HttpRequest request{baseUrl_ + "/alert/area?" + boxAround(place),
                      {{"Accept", "application/json"}},
                      kTimeout,
                      kLongestCapMessage};
  auto const answer = exchange(http_, std::move(request), std::nullopt, stop);
  std::vector<std::string> addresses;
  if (!answer) {
    fail(listing, answer.error());
    return addresses;
  }
  if ((*answer)->status != kOk) {
    fail(listing, ServiceFailure::answered((*answer)->status));
    return addresses;
  }
  auto const list = parseFpasAlertIds((*answer)->body);
  if (!list) {
    fail(listing, ServiceFailure::of(unreadable, "the response is not a valid list of alerts (" +
                                                     list.error().text() + ")"));
    return addresses;
  }
  for (std::string const& id : list->ids) addresses.push_back(baseUrl_ + "/alert/" + id);
  std::size_t const beyond = addresses.size() > kMostAlerts ? addresses.size() - kMostAlerts : 0;
  addresses.resize(addresses.size() - beyond);
  if (std::size_t const left = list->unreadable + beyond; left > 0) {
    fail(listing,
         ServiceFailure::of(incomplete, std::to_string(left) + " of the listed alerts cannot be read"));
  }
  return addresses;
}

}  // namespace nimbara
