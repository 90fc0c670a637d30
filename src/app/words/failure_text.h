// Why a service failed, in the user's words: for the window and for long-lived programs. Logs and commands
// keep the fixed English of APIError. Pure.
#pragma once

#include "base/words/texts.h"
#include "providers/common/api_error.h"

#include <string>

namespace nimbara {

/// "the service did not answer in time": the part of a sentence, without a full stop. A service's own reason
/// stays as it was sent.
std::string failureText(APIError const& error, Texts const& texts);

}  // namespace nimbara
