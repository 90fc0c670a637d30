// The country of a place in the words of a language. Pure.
#pragma once

#include "base/geodesy.h"
#include "base/words/texts.h"

#include <string>

namespace nimbara {

/// `known` is its name as a service or the gazetteer gave it: kept in English, in which it was given, and
/// where the coordinate is in no country; empty stays empty.
std::string countryText(Coordinate coordinate, std::string const& known, Texts const& texts);

}  // namespace nimbara
