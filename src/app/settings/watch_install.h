// Lets `nimbara watch` start with the user's session: a systemd user unit where there is such a manager, else
// an entry of the desktop's autostart. Files that somebody changed by hand are never touched: the first line
// of what is written here seals the rest.
#pragma once

#include "app/settings/environment.h"
#include "base/enum_names.h"
#include "base/result.h"
#include "platform/linux/child_process.h"

#include <filesystem>
#include <string>

namespace nimbara {

enum class WatchStart {
  byHand,         ///< nothing starts it
  atLogin,        ///< a unit of ours does, and runs it now
  fromNextLogin,  ///< an entry of the desktop's autostart does, without a systemd that runs it now
  changedByHand   ///< somebody's own does, or keeps it from starting
};
template <>
inline constexpr auto enumNames<WatchStart> =
    std::to_array<std::string_view>({"byHand", "atLogin", "fromNextLogin", "changedByHand"});
static_assert(enumNamesComplete(WatchStart::changedByHand));

WatchStart watchStart(Environment const& environment);

/// What was done, or why it was not, for people. `environment.program` is what the session will start.
Result<std::string, std::string> installWatch(Environment const& environment,
                                              ProgramRunner const& runProgram);
/// Undoes what `installWatch` did.
Result<std::string, std::string> uninstallWatch(Environment const& environment,
                                                ProgramRunner const& runProgram);

/// The files' contents with their seals, for the program at an absolute path.
std::string watchUnit(std::filesystem::path const& program);
std::string watchAutostart(std::filesystem::path const& program);

}  // namespace nimbara
