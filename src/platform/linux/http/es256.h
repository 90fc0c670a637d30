// Signs through libcrypto, which the network's library brings: so a run that asks nobody does not load it.
#pragma once

#include "platform/es256.h"

namespace nimbara {

/// As an `Es256Signer` does.
Result<std::string, std::string> signEs256(std::string_view keyPem, std::string_view text);

}  // namespace nimbara
