#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"

#include "base/text/text.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <memory>

namespace nimbara {

namespace {

constexpr int kDeepest = 64;

enum class Element {
  entry,
  author,
  title,
  event,
  severity,
  areaDesc,
  identifier,
  id,
  status,
  messageType,
  sent,
  onset,
  expires,
  polygon,
  circle,
  valueName,
  value,
  link,
  other
};

struct NamedElement {
  std::string_view name;
  Element element;
};

constexpr std::array kElements = std::to_array<NamedElement>({
    {"entry", Element::entry},
    {"author", Element::author},
    {"title", Element::title},
    {"event", Element::event},
    {"severity", Element::severity},
    {"areaDesc", Element::areaDesc},
    {"identifier", Element::identifier},
    {"id", Element::id},
    {"status", Element::status},
    {"message_type", Element::messageType},
    {"msgType", Element::messageType},
    {"sent", Element::sent},
    {"onset", Element::onset},
    {"expires", Element::expires},
    {"polygon", Element::polygon},
    {"circle", Element::circle},
    {"valueName", Element::valueName},
    {"value", Element::value},
    {"link", Element::link},
});

std::string_view withoutPrefix(std::string_view name) {
  return name.substr(name.find(':') + 1);
}

Element elementOf(std::string_view name) {
  auto const* const found = std::ranges::find(kElements, withoutPrefix(name), &NamedElement::name);
  return found == kElements.end() ? Element::other : found->element;
}

void addOnce(std::vector<RegionCode>& codes, RegionCode code) {
  if (std::ranges::find(codes, code) == codes.end()) codes.push_back(std::move(code));
}

/// What the parser's callbacks work on.
class FeedReader {
 public:
  FeedReader(XML_Parser parser, std::vector<RawEntry>& entries) : parser_(parser), entries_(entries) {}

  void begin(std::string_view name, XML_Char const** attributes) {
    if (++depth_ > kDeepest) return refuse("its elements are nested too deeply");
    if (depth_ == 1 && withoutPrefix(name) != "feed") return refuse("it is not a feed");
    Element const element = elementOf(name);
    if (!inEntry_) {
      if (element == Element::entry) beginEntry();
      return;
    }
    if (element == Element::author && authorDepth_ == 0) authorDepth_ = depth_;
    if (element == Element::link) readLink(attributes);
    text_.clear();
  }

  void characters(std::string_view text) {
    if (inEntry_ && authorDepth_ == 0) text_.append(text);
  }

  void end(std::string_view name) {
    if (inEntry_) endWithin(elementOf(name));
    --depth_;
  }

  void refuse(char const* reason) {
    if (!refusal_) refusal_ = reason;
    XML_StopParser(parser_, XML_FALSE);
  }

  std::optional<std::string> const& refusal() const { return refusal_; }

 private:
  void beginEntry() {
    inEntry_ = true;
    entryDepth_ = depth_;
    authorDepth_ = 0;
    current_ = {};
    pendingRegistry_.clear();
    text_.clear();
  }

  void endWithin(Element element) {
    if (depth_ == entryDepth_) {
      entries_.push_back(std::move(current_));
      inEntry_ = false;
    } else if (authorDepth_ == 0) {
      store(element, trimmed(text_));
    } else if (depth_ == authorDepth_) {
      authorDepth_ = 0;
    }
    text_.clear();
  }

  void store(Element element, std::string_view text) {
    switch (element) {
      case Element::title:
        return assign(current_.title, text);
      case Element::event:
        return assign(current_.event, text);
      case Element::severity:
        return assign(current_.severity, text);
      case Element::areaDesc:
        return assign(current_.areaDesc, text);
      case Element::identifier:
        return assign(current_.identifier, text);
      case Element::id:
        return readIndexes(text);
      case Element::status:
        return assign(current_.status, text);
      case Element::messageType:
        return assign(current_.messageType, text);
      case Element::sent:
        current_.sent = parseIso8601(text);
        return;
      case Element::onset:
        current_.onset = parseIso8601(text);
        return;
      case Element::expires:
        current_.expires = parseIso8601(text);
        return;
      case Element::polygon:
        if (auto polygon = parseWarningPolygon(text)) current_.polygons.push_back(std::move(*polygon));
        return;
      case Element::circle:
        if (auto const circle = parseWarningCircle(text)) current_.circles.push_back(*circle);
        return;
      case Element::valueName:
        return assign(pendingRegistry_, text);
      case Element::value:
        return addCode(text);
      default:
        return;
    }
  }

  static void assign(std::string& member, std::string_view text) { member.assign(text); }

  void addCode(std::string_view code) {
    if (code.empty() || pendingRegistry_.empty()) return;
    if (pendingRegistry_ == kNuts3Registry) {
      current_.nuts3Codes.emplace_back(code);
    } else {
      addOnce(current_.otherCodes, {pendingRegistry_, std::string(code)});
    }
    pendingRegistry_.clear();
  }

  /// "…?index_info=1&index_area=0&index_geocode=0".
  void readIndexes(std::string_view id) {
    current_.infoIndex = indexIn(id, "index_info=");
    current_.areaIndex = indexIn(id, "index_area=");
  }

  static std::optional<std::size_t> indexIn(std::string_view id, std::string_view name) {
    auto const found = id.find(name);
    if (found == std::string_view::npos) return std::nullopt;
    std::string_view const digits = id.substr(found + name.size());
    std::size_t index = 0;
    auto const error = std::from_chars(digits.data(), digits.data() + digits.size(), index).ec;
    return error == std::errc{} ? std::optional(index) : std::nullopt;
  }

  /// Besides the message, entries link to their region's page, whose address has the region's code also where
  /// the entry itself gives that of another registry.
  void readLink(XML_Char const** attributes) {
    std::string_view href;
    std::string_view type;
    for (; attributes[0] != nullptr; attributes += 2) {
      if (std::string_view(attributes[0]) == "href") href = attributes[1];
      if (std::string_view(attributes[0]) == "type") type = attributes[1];
    }
    constexpr std::string_view kRegionPage = "?geocode=EMMA_ID:";
    if (type == "application/cap+xml") return assign(current_.link, href);
    if (auto const found = href.find(kRegionPage); found != std::string_view::npos) {
      std::string_view const code = href.substr(found + kRegionPage.size());
      if (!code.empty()) addOnce(current_.otherCodes, {std::string(kEmmaRegistry), std::string(code)});
    }
  }

  XML_Parser parser_;
  std::vector<RawEntry>& entries_;
  std::optional<std::string> refusal_;
  RawEntry current_;
  std::string text_;
  std::string pendingRegistry_;
  bool inEntry_ = false;
  int depth_ = 0;
  int entryDepth_ = 0;
  int authorDepth_ = 0;
};

FeedReader& reader(void* data) {
  return *static_cast<FeedReader*>(data);
}

void onBegin(void* data, XML_Char const* name, XML_Char const** attributes) {
  reader(data).begin(name, attributes);
}

void onEnd(void* data, XML_Char const* name) {
  reader(data).end(name);
}

void onCharacters(void* data, XML_Char const* text, int size) {
  reader(data).characters({text, static_cast<std::size_t>(size)});
}

void onEntity(void* data, XML_Char const*, int, XML_Char const*, int, XML_Char const*, XML_Char const*,
              XML_Char const*, XML_Char const*) {
  reader(data).refuse("it declares entities");
}

using ParserHandle = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;

std::string describe(XML_Parser parser) {
  return "line " + std::to_string(XML_GetCurrentLineNumber(parser)) + ": " +
         XML_ErrorString(XML_GetErrorCode(parser));
}

}  // namespace

Result<void, std::string> MeteoAlarmAtomParser::parse(std::string_view body) {
  entries_.clear();
  if (body.size() > std::size_t{std::numeric_limits<int>::max()}) {
    return std::unexpected("the feed is too long");
  }
  ParserHandle const parser(XML_ParserCreate(nullptr), &XML_ParserFree);
  FeedReader feed(parser.get(), entries_);
  XML_SetUserData(parser.get(), &feed);
  XML_SetElementHandler(parser.get(), &onBegin, &onEnd);
  XML_SetCharacterDataHandler(parser.get(), &onCharacters);
  XML_SetEntityDeclHandler(parser.get(), &onEntity);
  if (XML_Parse(parser.get(), body.data(), static_cast<int>(body.size()), XML_TRUE) == XML_STATUS_OK)
    return {};
  return std::unexpected("the feed cannot be read: " + feed.refusal().value_or(describe(parser.get())));
}

}  // namespace nimbara
