#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"

#include "base/text/text.h"
#include "feeds/fetching/xml_reader.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace nimbara {

namespace {

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

Element elementOf(std::string_view name) {
  auto const* const found = std::ranges::find(kElements, name, &NamedElement::name);
  return found == kElements.end() ? Element::other : found->element;
}

void addOnce(std::vector<RegionCode>& codes, RegionCode code) {
  if (std::ranges::find(codes, code) == codes.end()) codes.push_back(std::move(code));
}

class FeedReader final : XmlReader {
 public:
  explicit FeedReader(std::vector<RawEntry>& entries) : entries_(entries) {}

  using XmlReader::read;

 private:
  void begin(std::string_view name, XmlAttributes const& attributes) override {
    if (depth() == 1 && name != "feed") return refuse("it is not a feed");
    Element const element = elementOf(name);
    if (!inEntry_) {
      if (element == Element::entry) beginEntry();
      return;
    }
    if (element == Element::author && authorDepth_ == 0) authorDepth_ = depth();
    if (element == Element::link) readLink(attributes);
    text_.clear();
  }

  void characters(std::string_view text) override {
    if (inEntry_ && authorDepth_ == 0) text_.append(text);
  }

  void end(std::string_view name) override {
    if (inEntry_) endWithin(elementOf(name));
  }

  void beginEntry() {
    inEntry_ = true;
    entryDepth_ = depth();
    authorDepth_ = 0;
    current_ = {};
    pendingRegistry_.clear();
    text_.clear();
  }

  void endWithin(Element element) {
    if (depth() == entryDepth_) {
      entries_.push_back(std::move(current_));
      inEntry_ = false;
    } else if (authorDepth_ == 0) {
      store(element, trimmed(text_));
    } else if (depth() == authorDepth_) {
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
  void readLink(XmlAttributes const& attributes) {
    std::string_view const href = attributes.value("href");
    constexpr std::string_view kRegionPage = "?geocode=EMMA_ID:";
    if (attributes.value("type") == "application/cap+xml") return assign(current_.link, href);
    if (auto const found = href.find(kRegionPage); found != std::string_view::npos) {
      std::string_view const code = href.substr(found + kRegionPage.size());
      if (!code.empty()) addOnce(current_.otherCodes, {std::string(kEmmaRegistry), std::string(code)});
    }
  }

  std::vector<RawEntry>& entries_;
  RawEntry current_;
  std::string text_;
  std::string pendingRegistry_;
  bool inEntry_ = false;
  int entryDepth_ = 0;
  int authorDepth_ = 0;
};

}  // namespace

Result<void, std::string> MeteoAlarmAtomParser::parse(std::string_view body) {
  entries_.clear();
  auto const done = FeedReader(entries_).read(body);
  return done ? done : std::unexpected("the feed cannot be read: " + done.error());
}

}  // namespace nimbara
