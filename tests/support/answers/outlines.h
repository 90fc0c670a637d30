// Outlines of warning regions of a test's making, as GeoJSON.
#pragma once

#include "base/geodesy.h"

#include <fmt/format.h>

#include <string>
#include <vector>

namespace nimbara::test {

/// The ring of a rectangle, in degrees.
std::string rectangle(double south, double west, double north, double east);

std::string feature(std::string const& code, std::string const& country, std::string const& name,
                    std::string const& rings, std::string const& type = "EMMA_ID");

std::string collection(std::vector<std::string> const& features);

/// A square of that many degrees to each side.
std::string square(Coordinate center, double half);

}  // namespace nimbara::test
