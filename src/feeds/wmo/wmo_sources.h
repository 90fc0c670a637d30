// What is known of the issuers whose warnings the WMO Severe Weather Information Centre collects: the
// directory that it publishes, and what the program knows without it. Pure; any bytes may be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The country of a source or of a message's path ("kz-kazhydromet-en/2025/…"), ISO 3166-1; empty for
/// international ones.
std::string countryOfWmoSource(std::string_view path);

/// A source whose warnings would mislead.
bool isLeftOutWmoSource(std::string_view path);

/// The messages of this source draw nothing, but the centre draws them all: those that it does not place at a
/// point are elsewhere.
bool isDrawnByWmoCentre(std::string_view path);

/// By country, ISO 3166-1 alpha-2: the three digits of its member.
using WmoMembers = std::map<std::string, std::string, std::less<>>;

/// Members with a number and a country, however deep the document has them; the error is that of a document
/// without any.
Result<WmoMembers, DecodeError> parseWmoMembers(std::string_view body);

/// The countries with a source that operates and whose messages the centre keeps, sorted, however deep the
/// document has them; the error is that of a document without any.
Result<std::vector<std::string>, DecodeError> parseWmoSources(std::string_view body);

/// Where the directory has never been had.
std::optional<std::string> builtInWmoMember(std::string_view country);
std::vector<std::string> builtInWmoCountries();

}  // namespace nimbara
