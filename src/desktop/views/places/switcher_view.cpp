#include "desktop/views/places/switcher_view.h"

#include "base/text/search_text.h"
#include "base/text/text.h"
#include "base/words/list_text.h"

#include <algorithm>

namespace nimbara {

namespace {

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string line;
  for (std::string_view const part : parts) {
    if (!part.empty()) line += (line.empty() ? "" : "  ·  ") + std::string(part);
  }
  return line;
}

SwitcherRow rowOf(PlaceView const& place) {
  SwitcherRow row;
  row.kind = "place";
  row.id = place.id;
  row.title = place.name;
  row.detail = joined({place.area, place.localTime});
  row.temperature = place.temperature;
  row.sky = place.sky;
  row.isDay = place.isDay;
  row.mark = place.mark;
  row.isSelected = place.isSelected;
  row.sentence = place.name;
  for (std::string const* const part : {&place.area, &place.temperature, &place.localTime, &place.markText}) {
    if (!part->empty()) row.sentence += ", " + *part;
  }
  return row;
}

SwitcherRow rowOf(HereView const& here, ViewContext const& context) {
  SwitcherRow row;
  row.kind = "here";
  row.title = here.name;
  row.detail = context.text("desktop.here");
  row.temperature = here.temperature;
  row.sky = here.sky;
  row.isDay = here.isDay;
  row.isSelected = here.isSelected;
  row.sentence = here.sentence;
  return row;
}

SwitcherRow command(std::string_view kind, std::string title, std::string detail) {
  SwitcherRow row;
  row.kind = kind;
  row.sentence = title;
  row.title = std::move(title);
  row.detail = std::move(detail);
  return row;
}

/// Those whose names begin with the text come first.
void addMatches(std::vector<SwitcherRow>& rows, std::vector<PlaceView> const& places,
                std::string const& text) {
  std::string const wanted = searchFolded(text);
  std::vector<PlaceView const*> matches;
  for (PlaceView const& place : places) {
    if (matchesSearch(text, place.name, place.area)) matches.push_back(&place);
  }
  std::ranges::stable_partition(
      matches, [&](PlaceView const* place) { return searchFolded(place->name).starts_with(wanted); });
  for (PlaceView const* const place : matches) rows.push_back(rowOf(*place));
}

void addFound(std::vector<SwitcherRow>& rows, std::vector<FoundView> const& found,
              ViewContext const& context) {
  constexpr std::size_t kMostFound = 7;  // the row of the online search stays in sight below them
  std::size_t const most = rows.size() + kMostFound;
  for (std::size_t i = 0; i < found.size() && rows.size() < most; ++i) {
    if (found[i].isSaved) continue;
    SwitcherRow& row = rows.emplace_back(command("found", found[i].name, found[i].area));
    row.id = std::to_string(i);
    row.sentence = found[i].sentence;
    appendClause(row.sentence, context.text("desktop.add"), context.texts);
  }
}

/// A saved place that only the search knows by the text: "NYC" for New York.
void addSaved(std::vector<SwitcherRow>& rows, std::vector<PlaceView> const& places,
              std::vector<FoundView> const& found) {
  for (FoundView const& match : found) {
    auto const isListed = [&](SwitcherRow const& row) {
      return row.kind == "place" && row.id == match.savedId;
    };
    if (!match.isSaved || std::ranges::any_of(rows, isListed)) continue;
    auto const saved = std::ranges::find(places, match.savedId, &PlaceView::id);
    if (saved != places.end()) rows.push_back(rowOf(*saved));
  }
}

void addOnline(std::vector<SwitcherRow>& rows, SwitcherSearch const& search, ViewContext const& context) {
  std::string const& note = search.note;
  rows.push_back(search.isOnline
                     ? command("online", context.text("desktop.search.online.asking"), {})
                     : command("online", context.texts.format("desktop.search.online", search.text),
                               note.empty() ? context.text("desktop.search.online.hint") : note));
}

void divide(std::vector<SwitcherRow>& rows) {
  auto const groupOf = [](SwitcherRow const& row) {
    return row.kind == "here" || row.kind == "place" ? 0 : row.kind == "found" ? 1 : 2;
  };
  for (std::size_t i = 1; i < rows.size(); ++i)
    rows[i].isFirstOfKind = groupOf(rows[i]) != groupOf(rows[i - 1]);
}

}  // namespace

bool matchesSearch(std::string_view text, std::string_view name, std::string_view area) {
  std::string const there = " " + searchFolded(name) + " " + searchFolded(area);
  std::string const wanted = searchFolded(text);
  return std::ranges::all_of(split(wanted, ' '), [&](std::string_view word) {
    return !word.empty() && there.find(" " + std::string(word)) != std::string::npos;
  });
}

std::vector<SwitcherRow> switcherRows(std::vector<PlaceView> const& places, HereView const& here,
                                      std::vector<FoundView> const& found, SwitcherSearch const& search,
                                      ViewContext const& context) {
  std::vector<SwitcherRow> rows;
  bool const showsAll = search.text.empty();
  std::string const hereName = context.text("desktop.here");
  if (here.isOffered && (showsAll || matchesSearch(search.text, here.name, hereName))) {
    rows.push_back(rowOf(here, context));
  }
  if (showsAll) {
    for (PlaceView const& place : places) rows.push_back(rowOf(place));
    if (!here.isOffered) rows.push_back(command("locate", context.text("desktop.here.find"), here.note));
    rows.push_back(command("manage", context.text("desktop.switch.manage"), {}));
  } else {
    addMatches(rows, places, search.text);
    addSaved(rows, places, found);
    addFound(rows, found, context);
    addOnline(rows, search, context);
  }
  divide(rows);
  return rows;
}

}  // namespace nimbara
