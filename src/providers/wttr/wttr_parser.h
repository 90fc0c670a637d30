// From the bytes of a wttr.in answer (format=j1) to the interchange record, which has the same shape. Every
// value is read leniently: a number may stand for a text, and what is missing or of another kind becomes an
// empty text. Only an answer without any of the record's lists is an error. Pure; any bytes may be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "model/wttr_response.h"

#include <string_view>

namespace nimbara {

/// As the service wrote it, texts cut to one line each; `joinWttr` makes it fit for the program. The service
/// reports its failures as plain text with status 200: the error repeats its words.
Result<WttrResponse, DecodeError> parseWttr(std::string_view body);

}  // namespace nimbara
