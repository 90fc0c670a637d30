#include "feeds/alerts/events/cap_likeness.h"

#include "base/text/search_text.h"
#include "base/text/text.h"
#include "feeds/alerts/events/cap_blocks.h"
#include "feeds/cap/cap_language.h"

#include <algorithm>
#include <set>

namespace nimbara {

namespace {

using Names = std::set<std::string>;

std::string shapeName(WarningPolygon const& polygon) {
  if (polygon.empty()) return {};
  Coordinate const corner = polygon[polygon.size() / 2];
  return std::to_string(polygon.size()) + "@" + formatCoordinate(polygon.front()) + formatCoordinate(corner);
}

Names codesOf(CapAlert const& message) {
  Names codes;
  for (CapInfo const& info : message.infos) {
    for (CapArea const& area : info.areas) {
      for (CapValue const& code : area.geocodes) codes.insert(code.name + "=" + code.value);
    }
  }
  return codes;
}

Names shapesOf(CapAlert const& message) {
  Names shapes;
  for (CapInfo const& info : message.infos) {
    for (CapArea const& area : info.areas) {
      for (WarningPolygon const& polygon : area.polygons) shapes.insert(shapeName(polygon));
      for (WarningCircle const& circle : area.circles) {
        shapes.insert(formatCoordinate(circle.center) + std::to_string(circle.radiusKm));
      }
    }
  }
  return shapes;
}

/// In one language, lest two be taken for two areas.
Names namesOf(CapAlert const& message) {
  Names names;
  for (CapInfo const& info : message.infos) {
    if (info.language != message.infos.front().language) continue;
    for (CapArea const& area : info.areas) names.insert(accentsKept(area.areaDesc));
  }
  return names;
}

Names languagesOf(CapAlert const& message) {
  Names languages;
  for (CapInfo const& info : message.infos) languages.insert(languageTag(info.language));
  return languages;
}

bool haveCommon(Names const& a, Names const& b) {
  return std::ranges::any_of(a, [&](std::string const& name) { return b.contains(name); });
}

/// Words of two languages cannot be compared, what they are about can.
bool mayBeOneKind(CapInfo const& a, CapInfo const& b) {
  if (!a.eventCodes.empty() && !b.eventCodes.empty()) return a.eventCodes == b.eventCodes;
  WarningKind const kind = kindOf(a);
  WarningKind const other = kindOf(b);
  return kind == other || kind == WarningKind::other || other == WarningKind::other;
}

std::string joined(Names const& names) {
  std::string text;
  for (std::string const& name : names) text += "|" + name;
  return text;
}

}  // namespace

std::string_view withoutLanguage(std::string_view identifier) {
  constexpr std::size_t kCode = 2;
  if (identifier.size() <= kCode + 1) return identifier;
  std::string_view const code = identifier.substr(identifier.size() - kCode);
  char const joint = identifier[identifier.size() - kCode - 1];
  auto const isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  bool const isJoined = joint == '-' || joint == '_' || joint == '.';
  bool const isCode = isJoined && isLetter(code[0]) && isLetter(code[1]);
  return isCode ? identifier.substr(0, identifier.size() - kCode - 1) : identifier;
}

std::string languageFreeText(CapAlert const& message) {
  if (message.infos.empty()) return {};
  CapInfo const& info = message.infos.front();
  auto const moment = [](std::optional<Instant> instant) { return instant ? formatIso8601(*instant) : "-"; };
  return message.sender + "|" + message.msgType + "|" + moment(info.onset) + "|" + moment(info.expires) +
         "|" + info.severity + "|" + std::to_string(info.areas.size()) + joined(codesOf(message)) +
         joined(shapesOf(message));
}

Translation translationOf(CapAlert const& a, CapAlert const& b) {
  CapInfo const& one = a.infos.front();
  CapInfo const& other = b.infos.front();
  if (languageTag(one.language) == languageTag(other.language) || !mayBeOneKind(one, other))
    return Translation::no;
  if (haveCommon(languagesOf(a), languagesOf(b))) return Translation::no;
  if (withoutLanguage(a.identifier) == withoutLanguage(b.identifier)) return Translation::surely;
  bool const isPlaced = !codesOf(a).empty() || !shapesOf(a).empty();
  return isPlaced && a.sent && a.sent == b.sent ? Translation::perhaps : Translation::no;
}

bool haveCommonArea(CapAlert const& a, CapAlert const& b) {
  Names const codes = codesOf(a);
  Names const others = codesOf(b);
  if (haveCommon(shapesOf(a), shapesOf(b))) return true;
  if (!codes.empty() && !others.empty()) return haveCommon(codes, others);
  return haveCommon(namesOf(a), namesOf(b));
}

Likeness likenessOf(CapAlert const& message) {
  if (message.infos.empty()) return {};
  CapInfo const& info = message.infos.front();
  Names const codes = codesOf(message);
  Names const shapes = shapesOf(message);
  // Names last: they are written in one way today and in another tomorrow.
  std::string const areas = joined(!codes.empty() ? codes : !shapes.empty() ? shapes : namesOf(message));
  std::string const issuer = message.sender.substr(message.sender.find('@') + 1);
  std::string const timeless = issuer + "|" + eventWords(info) + areas;
  Likeness likeness{timeless, timeless, info.onset.has_value()};
  if (info.onset) likeness.text += "|" + formatIso8601(std::chrono::floor<std::chrono::hours>(*info.onset));
  return likeness;
}

EventPeriod periodOf(CapAlert const& message) {
  CapInfo const& info = message.infos.front();
  auto const from = info.onset ? info.onset : info.effective ? info.effective : message.sent;
  Instant const begin = from.value_or(info.expires.value_or(Instant()));
  return {info.expires ? std::min(begin, *info.expires) : begin, info.expires};
}

}  // namespace nimbara
