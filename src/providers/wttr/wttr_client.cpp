#include "providers/wttr/wttr_client.h"

#include "base/text/number.h"
#include "providers/common/service_answer.h"
#include "providers/wttr/wttr_join.h"
#include "providers/wttr/wttr_parser.h"

namespace nimbara {

std::string wttrPath(Coordinate place) {
  return "/" + plainDecimal(place.latitude) + "," + plainDecimal(place.longitude) + "?format=j1";
}

Result<WttrResponse, APIError> readWttrAnswer(HttpResponse const& answer, Coordinate place,
                                              TimeZoneLookup const& timeZone) {
  if (auto refusal = refusalIn(answer)) return std::unexpected(std::move(*refusal));
  auto response = parseWttr(answer.body);
  if (!response) return std::unexpected(APIError::decoding(response.error()));
  return joinWttr(std::move(*response), place, timeZone);
}

Result<WttrResponse, APIError> WttrAPIClient::fetch(Coordinate place, std::stop_token const& stop) {
  auto const answer = get(wttrPath(place), {}, stop);
  if (!answer) return std::unexpected(answer.error());
  return readWttrAnswer(*answer, place, timeZone_);
}

}  // namespace nimbara
