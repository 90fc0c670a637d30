// What was changed in the list of places and how it is taken back, the last change first. Pure.
#pragma once

#include "app/places/places.h"
#include "base/words/texts.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct PlaceChange {
  enum class Kind { removed, renamed, moved, added };

  Kind kind = Kind::removed;
  SavedPlace place;  ///< as it was
  int position = 1;  ///< where it was, from one
  bool wasSelected = false;
  std::string newName;                          ///< of `renamed`
  std::optional<Uuid> selected = std::nullopt;  ///< of `added`: the place that was shown before

  bool operator==(PlaceChange const&) const = default;
};

/// The change as it is about to be made; nothing where it changes nothing.
std::optional<PlaceChange> removalOf(PlaceList const& list, Uuid const& id);
std::optional<PlaceChange> renamingOf(PlaceList const& list, Uuid const& id, std::string_view name);
std::optional<PlaceChange> moveOf(PlaceList const& list, Uuid const& id, int position);

PlaceChange additionOf(PlaceList const& list, SavedPlace place);

class PlaceUndo {
 public:
  void note(PlaceChange change);
  /// The last change, which is forgotten; nothing where there is none.
  std::optional<PlaceChange> take();
  void clear() { changes_.clear(); }
  bool isEmpty() const { return changes_.empty(); }
  /// "Warsaw removed.", of the last change; empty for none.
  std::string text(Texts const& texts) const;

 private:
  std::vector<PlaceChange> changes_;
};

/// The place before or after the selected one, the current location first and the first again after the last.
/// `step` is 1 or -1. Nothing where there is no other.
std::optional<Uuid> neighbourPlace(PlaceList const& list, int step);

}  // namespace nimbara
