#include "feeds/cap/cap_issuer.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "regions/country_code.h"

#include <algorithm>
#include <string_view>

namespace nimbara {

namespace {

/// Ends of domains that are sold to the whole world; what stands under them says nothing of a country.
constexpr std::string_view kSoldWorldwide[] = {
    "ac", "ai", "am", "as", "bz", "cc", "cd", "co", "dj", "fm", "gd", "gg", "gl", "im", "io", "je", "la",
    "li", "ly", "me", "ms", "mu", "nu", "pw", "sc", "sh", "st", "tk", "to", "tv", "vc", "vg", "ws"};
/// Unless the label before them is kept for a government.
constexpr std::string_view kOfGovernments[] = {"gov", "gob", "gouv", "go", "gv", "mil"};

template <std::size_t size>
bool has(std::string_view const (&list)[size], std::string_view text) {
  return std::ranges::find(list, text) != std::ranges::end(list);
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// "2.49.0", a kind of identifier, and the country's number.
std::string countryOfIdentifier(std::string_view identifier) {
  constexpr std::string_view kArc = "2.49.0.";
  std::size_t const at = identifier.find(kArc);
  bool const isWhole =
      at == 0 || (at != std::string_view::npos && !isDigit(identifier[at - 1]) && identifier[at - 1] != '.');
  if (!isWhole) return {};
  auto const parts = split(identifier.substr(at + kArc.size()), '.');
  if (parts.size() < 2 || parts[0].empty() || !std::ranges::all_of(parts[0], isDigit)) return {};
  // What the service adds of its own may stand right behind the number.
  std::string_view const rest = parts[1];
  std::string_view const digits = rest.substr(0, rest.find_first_not_of("0123456789"));
  constexpr std::size_t kMostDigits = 3;
  if (digits.empty() || digits.size() > kMostDigits) return {};
  return countryCodeOfNumber(parseInteger(digits).value_or(-1));
}

/// Of an e-mail or web address or of a bare domain.
std::string countryOfSender(std::string_view sender) {
  if (std::size_t const scheme = sender.find("://"); scheme != std::string_view::npos) {
    sender.remove_prefix(scheme + 3);
  }
  sender = sender.substr(0, sender.find_first_of("/:,; \t\r\n"));
  if (std::size_t const at = sender.rfind('@'); at != std::string_view::npos) sender.remove_prefix(at + 1);
  std::string const domain = asciiLowered(sender);
  auto const labels = split(domain, '.');
  if (labels.size() < 2) return {};
  bool const isGovernment = labels.size() > 2 && has(kOfGovernments, labels[labels.size() - 2]);
  if (has(kSoldWorldwide, labels.back()) && !isGovernment) return {};
  std::string country = isoCountryCode(labels.back());
  return alpha3CountryCode(country).empty() ? std::string() : country;
}

}  // namespace

std::string issuerCountry(CapAlert const& alert) {
  std::string country = countryOfIdentifier(alert.identifier);
  return country.empty() ? countryOfSender(trimmed(alert.sender)) : country;
}

}  // namespace nimbara
