// What the window's model knows of places: the list and what is changed in it, the search, the menu.
#include "desktop/views/places/switcher_view.h"
#include "desktop/window/models/desktop_model.h"

namespace nimbara {

namespace {

Uuid uuidOf(QString const& text) {
  return Uuid::parse(text.toStdString()).value_or(Uuid{});
}

bool notifiesOfEveryPlace(EngineSnapshot const& snapshot) {
  return !snapshot.settings || snapshot.settings->settings.boolean("notify_everyPlace");
}

}  // namespace

void DesktopModel::showPlaces() {
  ViewContext const view = context();
  places_->show(placeViews(snapshot_->places, snapshot_->kept, notifiesOfEveryPlace(*snapshot_),
                           snapshot_->hazards->places, view));
  here_->show(hereView(snapshot_->places, snapshot_->location, snapshot_->kept, view));
  found_->show(foundViews(foundPlaces_, snapshot_->places));
  showSwitcher();
}

void DesktopModel::showSwitcher() {
  if (!switcher_->isOpen()) return;
  ViewContext const view = context();
  auto const places = placeViews(snapshot_->places, snapshot_->kept, notifiesOfEveryPlace(*snapshot_),
                                 snapshot_->hazards->places, view);
  HereView const here = hereView(snapshot_->places, snapshot_->location, snapshot_->kept, view);
  SwitcherSearch const search{answeredText_, isSearchingOnline_, searchNote_.toStdString()};
  switcher_->show(switcherRows(places, here, foundViews(foundPlaces_, snapshot_->places), search, view));
}

void DesktopModel::selectPlace(QString const& id) {
  actions_.engine.selectPlace(uuidOf(id));
}

void DesktopModel::stepPlace(int step) {
  if (auto const next = neighbourPlace(snapshot_->places, step)) actions_.engine.selectPlace(*next);
}

QString DesktopModel::undoText() const {
  return QString::fromStdString(undo_.text(*setting_.wording.texts));
}

void DesktopModel::noteChange(PlaceChange change) {
  undo_.note(std::move(change));
  Q_EMIT undoChanged();
}

void DesktopModel::changeAhead(std::function<PlaceResult(PlaceList&)> const& apply) {
  auto ahead = std::make_shared<EngineSnapshot>(*snapshot_);
  if (!apply(ahead->places)) return;
  snapshot_ = std::move(ahead);
  showPlaces();
}

void DesktopModel::removePlace(QString const& id) {
  auto change = removalOf(snapshot_->places, uuidOf(id));
  if (!change) return;
  noteChange(std::move(*change));
  actions_.engine.removePlace(uuidOf(id));
}

void DesktopModel::renamePlace(QString const& id, QString const& name) {
  auto change = renamingOf(snapshot_->places, uuidOf(id), name.toStdString());
  if (!change) return;
  std::string const newName = change->newName;
  noteChange(std::move(*change));
  changeAhead([&](PlaceList& list) { return nimbara::renamePlace(list, uuidOf(id), newName); });
  actions_.engine.renamePlace(uuidOf(id), newName);
}

void DesktopModel::movePlace(QString const& id, int position) {
  auto change = moveOf(snapshot_->places, uuidOf(id), position);
  if (!change) return;
  noteChange(std::move(*change));
  changeAhead([&](PlaceList& list) { return nimbara::movePlace(list, uuidOf(id), position); });
  actions_.engine.movePlace(uuidOf(id), position);
}

void DesktopModel::undo() {
  auto const change = undo_.take();
  if (!change) return;
  Uuid const& id = change->place.id;
  switch (change->kind) {
    case PlaceChange::Kind::removed:
      actions_.engine.restorePlace(change->place, change->position, change->wasSelected);
      break;
    case PlaceChange::Kind::renamed:
      changeAhead([&](PlaceList& list) { return nimbara::renamePlace(list, id, change->place.name); });
      actions_.engine.renamePlace(id, change->place.name);
      break;
    case PlaceChange::Kind::moved:
      changeAhead([&](PlaceList& list) { return nimbara::movePlace(list, id, change->position); });
      actions_.engine.movePlace(id, change->position);
      break;
    case PlaceChange::Kind::added:
      actions_.engine.removePlace(id);
      if (change->selected) actions_.engine.selectPlace(*change->selected);
      break;
  }
  Q_EMIT undoChanged();
}

void DesktopModel::forgetUndo() {
  undo_.clear();
  Q_EMIT undoChanged();
}

void DesktopModel::locate() {
  actions_.engine.locate();
}

void DesktopModel::selectHere() {
  actions_.engine.selectPlace(kCurrentLocation);
}

void DesktopModel::removeHere() {
  actions_.engine.removeCurrentLocation();
}

void DesktopModel::chooseNotifications(QString const& id, QString const& choice) {
  if (auto const chosen = enumFromName<PlaceChoice>(choice.toStdString())) {
    actions_.engine.chooseNotifications(uuidOf(id), *chosen);
  }
}

void DesktopModel::search(QString const& text) {
  searchText_ = text.trimmed().toStdString();
  isSearchingOnline_ = false;
  searchNote_.clear();
  if (searchText_.empty()) {
    showFound({}, {});
  } else {
    auto const show = [text = searchText_](DesktopModel& model, std::vector<FoundPlace> const& found) {
      model.showFound(text, found);
    };
    actions_.engine.search(searchText_, answerTo<std::vector<FoundPlace>>(this, show));
    Q_EMIT searched();
  }
}

void DesktopModel::showFound(std::string const& text, std::vector<FoundPlace> found) {
  if (text != searchText_) return;
  answeredText_ = text;
  foundPlaces_ = std::move(found);
  found_->show(foundViews(foundPlaces_, snapshot_->places));
  showSwitcher();
  Q_EMIT searched();
}

void DesktopModel::searchOnline() {
  if (searchText_.empty() || isSearchingOnline_) return;
  isSearchingOnline_ = true;
  searchNote_.clear();
  using Found = Result<std::vector<FoundPlace>, APIError>;
  auto const show = [text = searchText_](DesktopModel& model, Found const& found) {
    model.showFoundOnline(text, found);
  };
  actions_.engine.searchOnline(searchText_, answerTo<Found>(this, show));
  showSwitcher();
  Q_EMIT searched();
}

void DesktopModel::showFoundOnline(std::string const& text,
                                   Result<std::vector<FoundPlace>, APIError> const& found) {
  if (text != searchText_ || !isSearchingOnline_) return;
  isSearchingOnline_ = false;
  searchNote_ = QString::fromStdString(onlineNote(found, context()));
  showFound(text, found ? *found : foundPlaces_);
}

void DesktopModel::addFound(int row) {
  if (row < 0 || row >= static_cast<int>(foundPlaces_.size())) return;
  FoundPlace const& place = foundPlaces_[static_cast<std::size_t>(row)];
  if (SavedPlace const* const saved = savedAs(place, snapshot_->places)) {
    actions_.engine.selectPlace(saved->id);
  } else {
    SavedPlace added = savedPlaceOf(place);
    noteChange(additionOf(snapshot_->places, added));
    actions_.engine.addPlace(std::move(added));
  }
}

}  // namespace nimbara
