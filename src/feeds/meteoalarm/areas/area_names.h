// Names of areas, compared by whole words. Plain functions.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace nimbara {

/// As `searchFolded` writes it, without joining words ("&", "and") and with points of the compass spelled in
/// full ("SW" and "Southwest" are "south west").
std::string comparableName(std::string_view name);

/// A name that has another's in it and is that of neither a region with outlines nor a part of the other:
/// "porto santo".
bool isLongerName(std::string_view comparable);

/// Whether the words of `name` stand in `text`, one after the other, other than as part of a name of someone
/// else: "savoie" stands in "paris savoie" and in "haute savoie", but in the latter not when
/// `isOthersName("haute savoie")`. Both are comparable; an empty name stands nowhere.
bool isNamedIn(std::string_view name, std::string_view text,
               std::function<bool(std::string_view)> const& isOthersName);

}  // namespace nimbara
