#include "feeds/cap/cap_reader.h"

#include "base/text/clean_text.h"
#include "base/text/text.h"
#include "feeds/cap/cap_json.h"
#include "feeds/cap/cap_text.h"
#include "feeds/cap/shape_geometry.h"
#include "feeds/fetching/xml_reader.h"

#include <array>

namespace nimbara {

namespace {

/// What an open element is to the reader.
enum class Block { alert, info, area, parameter, eventCode, geocode, leaf, ignored };

struct InnerBlock {
  Block parent;
  std::string_view name;
  Block block;
};

constexpr std::array kInnerBlocks = std::to_array<InnerBlock>({
    {Block::alert, "info", Block::info},
    {Block::info, "area", Block::area},
    {Block::info, "parameter", Block::parameter},
    {Block::info, "eventCode", Block::eventCode},
    {Block::area, "geocode", Block::geocode},
    {Block::alert, "Signature", Block::ignored},
});

constexpr bool isPair(Block block) {
  return block == Block::parameter || block == Block::eventCode || block == Block::geocode;
}

Block blockOf(Block parent, std::string_view name) {
  if (parent == Block::leaf || parent == Block::ignored) return Block::ignored;
  auto const* const found = std::ranges::find_if(
      kInnerBlocks, [&](InnerBlock const& inner) { return inner.parent == parent && inner.name == name; });
  return found == kInnerBlocks.end() ? Block::leaf : found->block;
}

template <class Record>
struct TextField {
  std::string_view name;
  std::string Record::* member;
  bool isProse = false;  ///< for people: kept to the letter
};

constexpr std::array kAlertTexts = std::to_array<TextField<CapAlert>>({
    {"identifier", &CapAlert::identifier},
    {"sender", &CapAlert::sender},
    {"status", &CapAlert::status},
    {"msgType", &CapAlert::msgType},
});

constexpr std::array kInfoTexts = std::to_array<TextField<CapInfo>>({
    {"language", &CapInfo::language},
    {"event", &CapInfo::event},
    {"headline", &CapInfo::headline, true},
    {"description", &CapInfo::description, true},
    {"instruction", &CapInfo::instruction, true},
    {"urgency", &CapInfo::urgency},
    {"severity", &CapInfo::severity},
    {"certainty", &CapInfo::certainty},
    {"senderName", &CapInfo::senderName},
    {"web", &CapInfo::web},
});

struct DateField {
  std::string_view name;
  std::optional<Instant> CapInfo::* member;
};

constexpr std::array kInfoDates = std::to_array<DateField>({
    {"effective", &CapInfo::effective},
    {"onset", &CapInfo::onset},
    {"expires", &CapInfo::expires},
});

template <class Record, std::size_t count>
bool storeText(Record& record, std::array<TextField<Record>, count> const& fields, std::string_view name,
               std::string_view text) {
  auto const* const field = std::ranges::find(fields, name, &TextField<Record>::name);
  if (field == fields.end()) return false;
  record.*(field->member) = field->isProse ? withoutControls(text) : withoutControls(trimmed(text));
  return true;
}

class MessageReader final : XmlReader {
 public:
  Result<CapAlert, std::string> message(std::string_view body) {
    if (auto const done = read(body); !done) return std::unexpected(done.error());
    noteBoxes(alert_);
    return std::move(alert_);
  }

 private:
  void begin(std::string_view name, XmlAttributes const&) override {
    if (blocks_.empty() && name != "alert") return refuse("it is not an alert");
    Block const block = blocks_.empty() ? Block::alert : blockOf(blocks_.back(), name);
    bool const isPart = block != Block::leaf && block != Block::ignored;
    if (isPart && ++parts_ > kMostCapParts) return refuse("it has too many parts");
    blocks_.push_back(block);
    text_.clear();
    if (block == Block::info) alert_.infos.emplace_back();
    if (block == Block::area) alert_.infos.back().areas.emplace_back();
    if (isPair(block)) pair_ = {};
  }

  void characters(std::string_view text) override {
    if (!blocks_.empty() && blocks_.back() == Block::leaf) text_.append(text);
  }

  void end(std::string_view name) override {
    Block const block = blocks_.back();
    blocks_.pop_back();
    if (block == Block::leaf) store(blocks_.back(), name);
    if (isPair(block)) storePair(block);
    text_.clear();
  }

  void store(Block parent, std::string_view name) {
    if (parent == Block::alert) return storeInAlert(name);
    if (parent == Block::info) return storeInInfo(alert_.infos.back(), name);
    if (parent == Block::area) return storeInArea(alert_.infos.back().areas.back(), name);
    if (!isPair(parent)) return;
    if (name == "valueName") pair_.name = withoutControls(trimmed(text_));
    if (name == "value") pair_.value = withoutControls(trimmed(text_));
  }

  void storeInAlert(std::string_view name) {
    if (storeText(alert_, kAlertTexts, name, text_)) return;
    if (name == "sent") alert_.sent = capDate(text_);
    if (name == "references") alert_.references = capReferences(text_);
  }

  void storeInInfo(CapInfo& info, std::string_view name) {
    if (storeText(info, kInfoTexts, name, text_)) return;
    if (name == "responseType") info.responseTypes.push_back(withoutControls(trimmed(text_)));
    auto const* const date = std::ranges::find(kInfoDates, name, &DateField::name);
    if (date != kInfoDates.end()) info.*(date->member) = capDate(text_);
  }

  void storeInArea(CapArea& area, std::string_view name) {
    if (name == "areaDesc") area.areaDesc = withoutControls(trimmed(text_));
    if (name == "polygon") storePolygon(area);
    if (name != "circle") return;
    if (auto const circle = parseWarningCircle(text_)) area.circles.push_back(*circle);
  }

  void storePolygon(CapArea& area) {
    auto polygon = parseWarningPolygon(text_);
    if (!polygon) return;
    points_ += polygon->size();
    if (points_ > kMostCapPoints) return refuse("its polygons have too many points");
    area.polygons.push_back(std::move(*polygon));
  }

  void storePair(Block block) {
    if (pair_.name.empty() && pair_.value.empty()) return;
    CapInfo& info = alert_.infos.back();
    auto& values = block == Block::parameter   ? info.parameters
                   : block == Block::eventCode ? info.eventCodes
                                               : info.areas.back().geocodes;
    values.push_back(std::move(pair_));
  }

  CapAlert alert_;
  std::vector<Block> blocks_;
  std::string text_;
  CapValue pair_;
  std::size_t points_ = 0;
  std::size_t parts_ = 0;
};

}  // namespace

Result<CapAlert, std::string> parseCap(std::string_view body) {
  if (body.size() > kLongestCapMessage) return std::unexpected("it is too long");
  if (trimmed(body).starts_with('{')) return parseCapJson(body);
  return MessageReader().message(body);
}

}  // namespace nimbara
