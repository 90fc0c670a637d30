#include "app/places/user_data.h"
#include "base/files/file.h"
#include "base/text/text.h"
#include "cli/cli.h"

namespace nimbara {

namespace {

constexpr std::size_t kLongestFile = 4 << 20;

std::string counted(std::size_t count, std::string const& one, std::string const& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

int runExport(CommandLine const& line, Session const& session) {
  UserDataOptions const& options = line.userData;
  auto const data = userData(*session.keyed, options.secrets ? Secrets::included : Secrets::leftOut);
  if (!data) return session.fail(exitCode::kUnavailable, data.error().message);
  std::string const document = encodeJson(*data) + "\n";
  if (options.file == "-") {
    session.console.out(document);
    return exitCode::kComplete;
  }
  if (auto const written = writeFileAtomically(options.file, document); !written) {
    return session.fail(exitCode::kUnavailable, written.error());
  }
  session.console.out("Wrote " + counted(data->settings.size(), "setting", "settings") + " and " +
                      counted(data->places.size(), "place", "places") + " to " + oneLine(options.file, 1000) +
                      ".\n");
  return exitCode::kComplete;
}

int runImport(CommandLine const& line, Session const& session) {
  auto const document = readFile(line.userData.file, kLongestFile);
  if (!document) return session.fail(exitCode::kUnavailable, document.error());
  auto const data = parseUserData(*document);
  if (!data) return session.fail(exitCode::kUnavailable, line.userData.file + ": " + data.error());
  auto const taken = takeUserData(*session.store, *data);
  if (!taken) return session.fail(exitCode::kUnavailable, taken.error().message);
  std::string said = "Took " + counted(taken->settings, "setting", "settings") + " and " +
                     counted(taken->places, "place", "places");
  if (taken->knownPlaces > 0) {
    said += "; " + counted(taken->knownPlaces, "place was", "places were") + " already saved";
  }
  session.console.out(said + ".\n");
  for (std::string const& sentence : taken->leftOut)
    session.fail(exitCode::kUnavailable, "left out: " + sentence);
  return taken->leftOut.empty() ? exitCode::kComplete : exitCode::kUnavailable;
}

}  // namespace nimbara
