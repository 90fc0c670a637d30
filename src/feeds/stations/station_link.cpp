#include "feeds/stations/station_link.h"

#include "base/files/file.h"
#include "base/files/file_turn.h"
#include "base/files/private_folders.h"
#include "base/json/json_codec.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargest = std::size_t{64} << 10;

}  // namespace

template Result<StationLink, DecodeError> decodeJson<StationLink>(std::string_view document);

Result<StationLink, std::string> StationLinkFile::read() const {
  std::error_code error;
  if (file_.empty() || !std::filesystem::exists(file_, error)) return StationLink{};
  auto const content = readFile(file_, kLargest);
  if (!content) return std::unexpected(content.error());
  auto link = decodeJson<StationLink>(*content);
  // Why is not said: what stands there is secret.
  if (!link) return std::unexpected("the file " + file_.string() + " is damaged");
  return std::move(*link);
}

Result<void, std::string> StationLinkFile::write(StationLink const& link) const {
  if (file_.empty()) return std::unexpected("there is no folder to keep the station's link in");
  return writeFileAtomically(file_, encodeJson(link));
}

std::unique_ptr<FileTurn> StationLinkFile::turn(std::stop_token const& stop) const {
  makePrivateFolders(file_.parent_path());
  std::filesystem::path const lock = file_.string() + ".lock";
  auto turn = std::make_unique<FileTurn>(lock, "station");
  while (!turn->isHeld() && !stop.stop_requested()) turn->wait(stop);
  if (!turn->isHeld()) return nullptr;
  return turn;
}

Result<void, std::string> StationLinkFile::change(std::function<void(StationLink&)> const& apply) const {
  auto const held = turn({});
  auto link = read();
  if (!link) return std::unexpected(link.error());
  apply(*link);
  return write(*link);
}

Result<void, std::string> StationLinkFile::remove() const {
  auto const held = turn({});
  std::error_code error;
  std::filesystem::remove(file_, error);
  if (error) return std::unexpected("the file " + file_.string() + " cannot be removed: " + error.message());
  return {};
}

}  // namespace nimbara
