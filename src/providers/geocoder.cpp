#include "providers/geocoder.h"

#include "base/json/json_codec.h"
#include "base/text/text.h"
#include "providers/common/service_answer.h"

namespace nimbara {

namespace {

struct GeocodingResult {
  std::optional<std::string> name;
  std::optional<double> latitude;
  std::optional<double> longitude;
  std::optional<std::string> country;
  std::optional<std::string> countryCode;
  std::optional<std::string> admin1;
  std::optional<std::string> timezone;
};

struct GeocodingAnswer {
  std::optional<std::vector<GeocodingResult>> results;
};

}  // namespace

template <>
inline constexpr auto jsonFields<GeocodingResult> = FieldList{
    field("name", &GeocodingResult::name),
    field("latitude", &GeocodingResult::latitude),
    field("longitude", &GeocodingResult::longitude),
    field("country", &GeocodingResult::country),
    field("country_code", &GeocodingResult::countryCode),
    field("admin1", &GeocodingResult::admin1),
    field("timezone", &GeocodingResult::timezone),
};

template <>
inline constexpr auto jsonFields<GeocodingAnswer> = FieldList{field("results", &GeocodingAnswer::results)};

Result<std::vector<GeocodedPlace>, DecodeError> parseGeocoding(std::string_view body) {
  auto const answer = decodeJson<GeocodingAnswer>(body);
  if (!answer) return std::unexpected(answer.error());
  std::vector<GeocodedPlace> places;
  for (GeocodingResult const& result : answer->results.value_or(std::vector<GeocodingResult>{})) {
    if (!result.name || !result.latitude || !result.longitude) continue;
    Coordinate const coordinate{*result.latitude, *result.longitude};
    if (!isValid(coordinate)) continue;
    places.push_back({oneLine(*result.name), oneLine(result.country.value_or("")),
                      oneLine(result.countryCode.value_or("")), oneLine(result.admin1.value_or("")),
                      coordinate, result.timezone.value_or("")});
  }
  return places;
}

OpenMeteoGeocoder::OpenMeteoGeocoder(HttpClient& http, ServiceAddress address)
    : http_(http), address_(std::move(address)) {}

Result<std::vector<GeocodedPlace>, APIError> OpenMeteoGeocoder::search(std::string_view name,
                                                                       std::string_view language, int count,
                                                                       std::stop_token stop) {
  HttpRequest request;
  request.url = address_.baseUrl + "/v1/search?name=" + percentEncoded(name) +
                "&count=" + std::to_string(count) + "&language=" + percentEncoded(language) + "&format=json";
  if (!address_.apiKey.empty()) request.url += "&apikey=" + percentEncoded(address_.apiKey);
  auto const answer = ask(http_, request, std::move(stop));
  if (!answer) return std::unexpected(answer.error());
  if (auto refusal = refusalIn(*answer)) return std::unexpected(std::move(*refusal));
  auto places = parseGeocoding(answer->body);
  if (!places) return std::unexpected(APIError::decoding(places.error()));
  if (places->empty()) return std::unexpected(APIError::of(APIError::Case::noResults));
  return std::move(*places);
}

}  // namespace nimbara
