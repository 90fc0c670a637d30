// Where the desktop keeps the user's secrets. Nobody is ever asked to open it: what is locked stays locked.
// Any thread; blocks for seconds at most.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"

#include <functional>
#include <memory>
#include <string>

namespace nimbara {

enum class SecretFault {
  absent,   ///< nobody keeps secrets here
  locked,   ///< only the user can open it
  missing,  ///< it keeps no such secret
  failed    ///< the answer was another one, or late
};

template <>
inline constexpr auto enumNames<SecretFault> =
    std::to_array<std::string_view>({"absent", "locked", "missing", "failed"});
static_assert(enumNamesComplete(SecretFault::failed));

class SecretStore {
 public:
  virtual ~SecretStore() = default;

  /// In place of what was kept under this identifier; `label` is for the user. Nothing is started for it.
  virtual Result<void, SecretFault> keep(std::string const& id, std::string const& label,
                                         std::string const& secret) = 0;
  virtual Result<std::string, SecretFault> find(std::string const& id) = 0;
  virtual Result<void, SecretFault> forget(std::string const& id) = 0;
};

/// Made when the first secret is asked for.
using MakeSecretStore = std::function<std::unique_ptr<SecretStore>()>;

}  // namespace nimbara
