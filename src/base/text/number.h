// Numbers to text and back, always in the C locale ("." for the decimal point, no grouping).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// Wholly a finite decimal number, with an optional sign and exponent, and nothing around it.
std::optional<double> parseDouble(std::string_view text);

/// Wholly decimal digits with an optional sign, within the range of int.
std::optional<int> parseInteger(std::string_view text);

/// The lenient reading of provider texts: trimmed, and 0 when it is no number.
double lenientDouble(std::string_view text);

/// `lenientDouble` truncated towards zero and held within the range of int.
int lenientInteger(std::string_view text);

/// Truncates towards zero and holds the result within the range of int; 0 for NaN.
int truncatedInteger(double value);

/// Rounded to the nearest whole number, halves away from zero; never -0.
double roundHalfAway(double value);

/// The shortest decimal text that reads back as `value`, without an exponent ("52.52", "-0.00001").
std::string plainDecimal(double value);

/// `value` with exactly `decimals` digits behind the point, as printf's "%.Nf" writes it in the C locale, but
/// never "-0".
std::string fixedDecimal(double value, int decimals);

/// `value` rounded half away from zero to a whole number, as text.
std::string roundedText(double value);

}  // namespace nimbara
