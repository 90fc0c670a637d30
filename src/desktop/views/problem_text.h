// Why something could not be read, changed or asked, as sentences in the user's language. Pure.
#pragma once

#include "desktop/views/view_context.h"
#include "platform/service_failure.h"
#include "platform/settings/settings_store.h"

#include <optional>
#include <string>

namespace nimbara {

/// Empty when all went well. What was decided against says why in the words of the store.
std::string storeText(std::optional<StoreError> const& problem, ViewContext const& context);

/// "Reason: the service did not answer in time.", of a service.
std::string becauseText(ServiceFailure const& failure, ViewContext const& context);

}  // namespace nimbara
