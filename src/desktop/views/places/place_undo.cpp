#include "desktop/views/places/place_undo.h"

#include "base/text/text.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kMostChanges = 50;

std::optional<PlaceChange> changeOf(PlaceChange::Kind kind, PlaceList const& list, Uuid const& id) {
  auto const found = std::ranges::find(list.places, id, &SavedPlace::id);
  if (found == list.places.end()) return std::nullopt;
  int const position = static_cast<int>(found - list.places.begin()) + 1;
  return PlaceChange{kind, *found, position, list.selected == id, {}, {}};
}

}  // namespace

std::optional<PlaceChange> removalOf(PlaceList const& list, Uuid const& id) {
  return changeOf(PlaceChange::Kind::removed, list, id);
}

std::optional<PlaceChange> renamingOf(PlaceList const& list, Uuid const& id, std::string_view name) {
  auto change = changeOf(PlaceChange::Kind::renamed, list, id);
  if (!change) return std::nullopt;
  change->newName = oneLine(name);
  bool const changesNothing = change->newName.empty() || change->newName == change->place.name;
  return changesNothing ? std::nullopt : change;
}

std::optional<PlaceChange> moveOf(PlaceList const& list, Uuid const& id, int position) {
  auto change = changeOf(PlaceChange::Kind::moved, list, id);
  bool const isPossible = position >= 1 && position <= static_cast<int>(list.places.size());
  return change && isPossible && change->position != position ? change : std::nullopt;
}

PlaceChange additionOf(PlaceList const& list, SavedPlace place) {
  int const position = static_cast<int>(list.places.size()) + 1;
  return {PlaceChange::Kind::added, std::move(place), position, false, {}, list.selected};
}

void PlaceUndo::note(PlaceChange change) {
  if (changes_.size() == kMostChanges) changes_.erase(changes_.begin());
  changes_.push_back(std::move(change));
}

std::optional<PlaceChange> PlaceUndo::take() {
  if (changes_.empty()) return std::nullopt;
  PlaceChange last = std::move(changes_.back());
  changes_.pop_back();
  return last;
}

std::string PlaceUndo::text(Texts const& texts) const {
  if (changes_.empty()) return {};
  PlaceChange const& last = changes_.back();
  switch (last.kind) {
    case PlaceChange::Kind::removed:
      return texts.format("desktop.removed", last.place.name);
    case PlaceChange::Kind::renamed:
      return texts.format("desktop.renamed", last.place.name, last.newName);
    case PlaceChange::Kind::moved:
      return texts.format("desktop.moved", last.place.name);
    case PlaceChange::Kind::added:
      return texts.format("desktop.added", last.place.name);
  }
  return {};
}

std::optional<Uuid> neighbourPlace(PlaceList const& list, int step) {
  std::vector<Uuid> order;
  if (list.offersCurrentLocation && list.lastFix) order.push_back(kCurrentLocation);
  for (SavedPlace const& place : list.places) order.push_back(place.id);
  if (order.empty()) return std::nullopt;
  auto const selected = list.selected ? std::ranges::find(order, *list.selected) : order.end();
  if (selected == order.end()) return step > 0 ? order.front() : order.back();
  auto const count = static_cast<std::ptrdiff_t>(order.size());
  std::ptrdiff_t const next = ((selected - order.begin()) + step + count) % count;
  Uuid const id = order[static_cast<std::size_t>(next)];
  return id == *selected ? std::nullopt : std::optional(id);
}

}  // namespace nimbara
