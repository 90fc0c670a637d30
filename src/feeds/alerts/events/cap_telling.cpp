#include "feeds/alerts/events/cap_telling.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/alerts/alert_messages.h"
#include "feeds/alerts/coverage.h"
#include "feeds/alerts/events/cap_blocks.h"
#include "feeds/cap/cap_language.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::size_t kMostTexts = 8;
constexpr std::size_t kMostNames = 40;
constexpr std::size_t kMostNear = 20;
/// Of all outlines of an alert together: a map of some centimetres shows no more.
constexpr std::size_t kMostCorners = 4000;
constexpr std::size_t kMostShapes = 200;

/// The blocks of one language and script, in their order.
struct Group {
  std::string language;
  std::pair<int, bool> rank;  ///< for the reader: of the language, and whether it is another region's
  std::vector<CapBlock> blocks;
};

std::vector<Group> groupsOf(std::span<CapMessage const* const> messages, std::string_view reader) {
  std::vector<Group> groups;
  for (CapMessage const* const message : messages) {
    for (CapInfo const& info : message->alert->infos) {
      std::string const language = languageTag(info.language);
      auto found = std::ranges::find(groups, language, &Group::language);
      if (found == groups.end()) {
        groups.push_back({language, {languageRank(language, reader), language != languageTag(reader)}, {}});
        found = std::prev(groups.end());
      }
      found->blocks.push_back({&info, message, {}});
    }
  }
  std::ranges::stable_sort(groups, {}, &Group::rank);
  return groups;
}

std::string_view awarenessType(CapInfo const& info) {
  return valueOf(info.parameters, "awareness_type").value_or("");
}

/// They may be translations of one another.
bool areAlike(CapInfo const& a, CapInfo const& b) {
  bool const isOneTime = a.onset == b.onset && a.expires == b.expires;
  bool const isOneCode = a.eventCodes.empty() || b.eventCodes.empty() || a.eventCodes == b.eventCodes;
  return isOneTime && isOneCode && awarenessType(a) == awarenessType(b) &&
         gradeOf(a).severity == gradeOf(b).severity;
}

/// What they are of can be compared in all languages, unless one of them is of no kind that is known.
bool areOfOneKind(CapInfo const& a, CapInfo const& b) {
  WarningKind const kind = kindOf(a);
  WarningKind const other = kindOf(b);
  return kind == other || kind == WarningKind::other || other == WarningKind::other;
}

/// Of the other group the block that says the same; null when none does. Issuers keep to one order.
CapInfo const* twinIn(Group const& other, CapInfo const& info, std::size_t index, std::size_t count) {
  if (other.blocks.size() == count && areAlike(*other.blocks[index].info, info))
    return other.blocks[index].info;
  auto const found =
      std::ranges::find_if(other.blocks, [&](CapBlock const& block) { return areAlike(*block.info, info); });
  return found == other.blocks.end() ? nullptr : found->info;
}

/// Its own, or those of a twin that draws what it only names.
std::vector<CapArea> const& shapesFor(CapInfo const& info, std::vector<Group> const& groups,
                                      std::size_t index, std::size_t count) {
  if (drawsAnything(info)) return info.areas;
  for (Group const& other : groups) {
    CapInfo const* const twin = twinIn(other, info, index, count);
    if (twin != nullptr && drawsAnything(*twin)) return twin->areas;
  }
  return info.areas;
}

AlertSeverity severityOf(CapBlock const& block) {
  return gradeOf(*block.info).severity;
}

/// What the blocks say, each text once, in the order in which they begin.
template <class Text>
std::optional<std::string> said(std::vector<CapBlock const*> blocks, Text const& textOf) {
  std::ranges::stable_sort(blocks, {}, [](CapBlock const* block) { return block->info->onset; });
  std::vector<std::string> texts;
  for (CapBlock const* const block : blocks) {
    std::string text = textOf(*block->info);
    bool const isNew = !trimmed(text).empty() && std::ranges::count(texts, text) == 0;
    if (isNew && texts.size() < kMostTexts) texts.push_back(std::move(text));
  }
  std::string joined;
  for (std::string const& text : texts) joined += (joined.empty() ? "" : "\n\n") + text;
  return joined.empty() ? std::nullopt : std::optional(joined);
}

/// In tenths, as good as outlines are.
double rounded(double km) {
  return std::ceil(km * 10) / 10;
}

std::string areaNames(std::vector<CapBlock const*> const& blocks) {
  std::vector<std::string_view> names;
  std::string joined;
  for (CapBlock const* const block : blocks) {
    for (ReachedArea const& reached : block->where.areas) {
      std::string_view const name = trimmed(reached.area->areaDesc);
      if (name.empty() || std::ranges::count(names, name) > 0 || names.size() == kMostNames) continue;
      names.push_back(name);
      joined += (joined.empty() ? "" : ", ") + std::string(name);
    }
  }
  return joined;
}

std::string cornerText(Coordinate corner) {
  return plainDecimal(corner.latitude) + "," + plainDecimal(corner.longitude);
}

/// With fewer corners where there are too many of them.
std::string polygonText(WarningPolygon const& polygon) {
  std::size_t const step = polygon.size() / kMostCorners + 1;
  std::string text;
  for (std::size_t i = 0; i < polygon.size(); i += step)
    text += (text.empty() ? "" : " ") + cornerText(polygon[i]);
  if (step > 1) text += " " + cornerText(polygon.front());
  return text;
}

/// The areas that decide first, then the others of the same blocks.
std::vector<CapArea const*> drawnAreas(std::vector<CapBlock const*> const& blocks) {
  std::vector<CapArea const*> areas;
  for (CapBlock const* const block : blocks) {
    for (ReachedArea const& reached : block->where.areas) areas.push_back(reached.area);
  }
  for (CapBlock const* const block : blocks) {
    for (CapArea const& area : block->info->areas) {
      if (std::ranges::count(areas, &area) == 0) areas.push_back(&area);
    }
  }
  return areas;
}

void draw(WeatherAlert& alert, std::vector<CapBlock const*> const& blocks) {
  std::vector<std::string> polygons;
  std::vector<std::string> circles;
  std::size_t corners = 0;
  auto const take = [&](WarningPolygon const& polygon) {
    corners += std::min(polygon.size(), kMostCorners);
    bool const hasRoom = polygons.empty() || (corners <= kMostCorners && polygons.size() < kMostShapes);
    if (hasRoom && !polygon.empty()) polygons.push_back(polygonText(polygon));
  };
  for (CapArea const* const area : drawnAreas(blocks)) {
    std::ranges::for_each(area->polygons, take);
    for (WarningCircle const& circle : area->circles) {
      bool const hasRoom = circle.radiusKm > 0 && circles.size() < kMostShapes;
      if (hasRoom) circles.push_back(cornerText(circle.center) + " " + plainDecimal(circle.radiusKm));
    }
  }
  if (polygons.empty() && circles.empty()) std::ranges::for_each(blocks.front()->message->outline, take);
  if (!polygons.empty()) alert.polygons = std::move(polygons);
  if (!circles.empty()) alert.circles = std::move(circles);
}

std::optional<std::string> colourIn(std::vector<CapBlock const*> const& blocks) {
  for (std::string_view const colour : {"red", "orange", "yellow"}) {
    if (std::ranges::any_of(blocks, [&](CapBlock const* block) { return colourOf(*block->info) == colour; }))
      return std::string(colour);
  }
  return std::nullopt;
}

void addNear(WeatherAlert& alert, std::vector<CapBlock const*> const& blocks) {
  std::vector<NearArea> near;
  for (CapBlock const* const block : blocks) {
    std::string const colour = colourOf(*block->info);
    for (ReachedArea const& reached : block->where.areas) {
      NearArea row{reached.area->areaDesc, rounded(reached.km), severityOf(*block), {},
                   block->info->onset,     block->info->expires};
      if (!colour.empty()) row.colour = colour;
      if (near.size() < kMostNear && std::ranges::count(near, row) == 0) near.push_back(std::move(row));
    }
  }
  if (!near.empty()) alert.near = std::move(near);
}

/// From the first beginning to the last end; one without an end has the last.
void setPeriod(WeatherAlert& alert, std::vector<CapBlock const*> const& blocks) {
  for (CapBlock const* const block : blocks) {
    CapInfo const& info = *block->info;
    if (info.onset) alert.onset = std::min(alert.onset.value_or(*info.onset), *info.onset);
    if (info.expires) alert.expires = std::max(alert.expires.value_or(*info.expires), *info.expires);
  }
  if (std::ranges::any_of(blocks, [](CapBlock const* block) { return !block->info->expires; }))
    alert.expires.reset();
}

bool isAddress(std::string_view text) {
  return text.starts_with("https://") || text.starts_with("http://");
}

void setTexts(WeatherAlert& alert, std::vector<CapBlock const*> const& blocks, CapBlock const& gravest) {
  CapInfo const& info = *gravest.info;
  alert.title = titleOf(info);
  alert.description = said(blocks, textOf);
  alert.instruction = said(blocks, [](CapInfo const& one) { return one.instruction; });
  alert.text = alert.description ? alert.description : alert.title;
  alert.message = *alert.text;
  alert.isFullText = true;
  if (!info.language.empty()) alert.language = info.language;
  auto issuer = issuerOf(*gravest.message->alert, info);
  // Where the issuer itself is asked, nobody passes its warnings on.
  if (!issuer.empty() && issuer != alert.source) alert.issuer = std::move(issuer);
  if (!gravest.message->link.empty())
    alert.link = gravest.message->link;
  else if (isAddress(info.web))
    alert.link = info.web;
}

WeatherAlert alertOf(std::vector<CapBlock const*> const& blocks, Reach reach, CapView const& view) {
  CapBlock const& gravest =
      **std::ranges::max_element(blocks, {}, [](auto* block) { return severityOf(*block); });
  WeatherAlert alert;
  alert.isGovAlert = true;
  alert.source = warningServiceName(view.source);
  alert.severity = severityOf(gravest);
  if (!gradeOf(*gravest.info).isStated) alert.levelStated = false;
  alert.colour = colourIn(blocks);
  alert.kind = kindOf(*gravest.info);
  alert.issued = gravest.message->alert->sent;
  if (std::ranges::all_of(blocks, [](CapBlock const* block) { return isForWaters(*block->info); }))
    alert.onWater = true;
  setTexts(alert, blocks, gravest);
  setPeriod(alert, blocks);
  if (std::string names = areaNames(blocks); !names.empty()) alert.areaDesc = std::move(names);
  draw(alert, blocks);
  for (CapBlock const* const block : blocks) addMessage(alert, warningMessage(*block->message->alert));
  if (reach != Reach::near) return alert;
  CapBlock const& nearest =
      **std::ranges::min_element(blocks, {}, [](auto* block) { return block->where.km; });
  alert.distanceKm = rounded(nearest.where.km);
  addNear(alert, blocks);
  return alert;
}

/// The blocks of one event that lie so to the place.
std::vector<CapBlock const*> lying(std::vector<CapBlock const*> const& blocks, Reach reach) {
  std::vector<CapBlock const*> found;
  std::ranges::copy_if(blocks, std::back_inserter(found),
                       [&](auto* block) { return block->where.reach == reach; });
  return found;
}

Reach bestReach(std::vector<CapBlock const*> const& blocks) {
  Reach best = Reach::elsewhere;
  for (CapBlock const* const block : blocks) best = std::max(best, block->where.reach);
  return best;
}

ToldEvent toldOf(std::string const& words, std::vector<CapBlock const*> const& all, CapView const& view,
                 bool endsToo) {
  std::vector<CapBlock const*> warning;
  std::ranges::copy_if(all, std::back_inserter(warning),
                       [&](auto* block) { return endsToo || !tellsTheEnd(*block->info); });
  bool const isGreen =
      std::ranges::all_of(all, [](auto* block) { return colourOf(*block->info) == "green"; });
  ToldEvent told{words, bestReach(warning), false, isGreen, {}};
  if (told.reach == Reach::elsewhere) {
    told.reach = bestReach(all);
    told.isEnded = told.reach != Reach::elsewhere;
    if (told.isEnded) told.alert = alertOf(lying(all, told.reach), told.reach, view);
    return told;
  }
  told.alert = alertOf(lying(warning, told.reach), told.reach, view);
  // What is graver a few kilometres further on concerns the place, too.
  if (told.reach == Reach::here) addNear(told.alert, lying(warning, Reach::near));
  return told;
}

/// Whether a block's event is told in a better language already. Each of `blocks` can stand for one only.
bool isTranslated(std::vector<CapBlock> const& blocks, std::vector<bool>& isTold, Group const& best,
                  Group const& group, std::size_t index) {
  if (&best == &group) return false;
  CapInfo const& info = *group.blocks[index].info;
  bool const isInOrder = best.blocks.size() == group.blocks.size();
  if (isInOrder && areAlike(*best.blocks[index].info, info)) return true;
  for (std::size_t i = 0; i < isTold.size(); ++i) {
    if (isTold[i] || !areAlike(*blocks[i].info, info) || !areOfOneKind(*blocks[i].info, info)) continue;
    isTold[i] = true;
    return true;
  }
  return false;
}

}  // namespace

std::vector<CapBlock> blocksOf(std::span<CapMessage const* const> messages, CapView const& view) {
  std::vector<Group> const groups = groupsOf(messages, view.language);
  std::vector<CapBlock> blocks;
  for (Group const& group : groups) {
    std::vector<bool> isTold(blocks.size());  // in this language, too
    for (std::size_t i = 0; i < group.blocks.size(); ++i) {
      CapInfo const& info = *group.blocks[i].info;
      if (isTranslated(blocks, isTold, groups.front(), group, i)) continue;
      auto const& shapes = shapesFor(info, groups, i, group.blocks.size());
      blocks.push_back(
          {&info, group.blocks[i].message, whereaboutsOf(shapes, *group.blocks[i].message, view)});
    }
  }
  std::erase_if(blocks, [&](CapBlock const& block) { return isOver(*block.info, view.now); });
  return blocks;
}

std::vector<ToldEvent> toldEvents(std::vector<CapBlock> const& blocks, CapView const& view, bool endsToo) {
  std::vector<std::pair<std::string, std::vector<CapBlock const*>>> events;
  for (CapBlock const& block : blocks) {
    std::string const words = eventWords(*block.info);
    auto found = std::ranges::find_if(events, [&](auto const& event) { return event.first == words; });
    if (found == events.end()) {
      events.push_back({words, {}});
      found = std::prev(events.end());
    }
    found->second.push_back(&block);
  }
  std::vector<ToldEvent> told;
  told.reserve(events.size());
  for (auto const& [words, all] : events) told.push_back(toldOf(words, all, view, endsToo));
  return told;
}

}  // namespace nimbara
