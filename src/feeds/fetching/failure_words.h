// Why a service gave nothing newer, in the words of a language. Pure.
#pragma once

#include "base/words/texts.h"
#include "platform/service_failure.h"

#include <string>

namespace nimbara {

/// "the service did not answer in time": the part of a sentence, without a full stop.
std::string failureText(ServiceFailure const& failure, Texts const& texts);

}  // namespace nimbara
