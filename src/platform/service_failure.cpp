#include "platform/service_failure.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using Transport = HttpError::Kind;
using Kind = ServiceFailure::Kind;

struct TransportText {
  Transport transport;
  std::string_view text;
};

constexpr std::array kTransports =
    std::to_array<TransportText>({{Transport::unresolvedHost, "the network cannot be reached"},
                                  {Transport::connectionFailed, "the service cannot be reached"},
                                  {Transport::tlsFailed, "could not establish a secure connection"},
                                  {Transport::timedOut, "the service took too long to respond"},
                                  {Transport::bodyTooLarge, "the response was too large"},
                                  {Transport::truncated, "the response was incomplete"}});

std::string networkText(ServiceFailure const& failure) {
  auto const row = std::ranges::find(kTransports, failure.transport, &TransportText::transport);
  if (row == kTransports.end()) return failure.detail;
  std::string const said(row->text);
  return failure.detail.empty() || failure.detail == said ? said : said + " (" + failure.detail + ")";
}

std::string plainText(ServiceFailure const& failure) {
  switch (failure.kind) {
    case Kind::network:
      return networkText(failure);
    case Kind::status:
      return "the service returned status " + std::to_string(failure.status);
    case Kind::noAnswer:
      return failure.detail.empty() ? "no response yet" : failure.detail;
    case Kind::othersAsk:
      return "another running Nimbara is already asking";
    case Kind::leftAlone:
      return "the service failed a short while ago";
    case Kind::notAskedLately:
      return "no check was requested";
    case Kind::noSuchPlace:
      return "the coordinates are not valid";
    default:
      return failure.detail;
  }
}

}  // namespace

std::string sentenceOf(ServiceFailure const& failure) {
  std::string text = failure.isOfWaters ? "those for the water off the shore: " : "";
  text += plainText(failure);
  return failure.nextTry ? text + "; next attempt from " +
                               formatIso8601(std::chrono::ceil<std::chrono::seconds>(*failure.nextTry))
                         : text;
}

}  // namespace nimbara
