// Texts read out by the desktop's speech server. Its library is in a module beside the program that is loaded
// with the first text, so that nobody else pays for it.
#pragma once

#include "base/result.h"

#include <filesystem>
#include <string>

namespace nimbara {

/// `program` is the running program's file, `language` of two letters. Returns once the server has the text.
/// The error is a sentence without a full stop.
Result<void, std::string> sayAloud(std::filesystem::path const& program, std::string const& text,
                                   std::string const& language, bool isUrgent = false);

/// Why nothing could be read out at the moment, likewise; empty where it could.
std::string whySilent(std::filesystem::path const& program);

}  // namespace nimbara
