#include "base/files/file.h"

#include "base/files/private_folders.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace nimbara {

namespace {

using std::filesystem::path;

/// An open descriptor; closed when it goes.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;

  int get() const { return descriptor_; }
  bool isOpen() const { return descriptor_ >= 0; }
  int close() { return isOpen() ? ::close(std::exchange(descriptor_, -1)) : 0; }

 private:
  int descriptor_;
};

/// A name that is taken away again unless somebody keeps it.
class TemporaryName {
 public:
  explicit TemporaryName(std::string name) : name_(std::move(name)) {}
  ~TemporaryName() {
    if (!name_.empty()) unlink(name_.c_str());
  }
  TemporaryName(TemporaryName const&) = delete;
  TemporaryName& operator=(TemporaryName const&) = delete;

  char const* text() const { return name_.c_str(); }
  void release() { name_.clear(); }

 private:
  std::string name_;
};

std::unexpected<std::string> failure(path const& file, std::string_view what, int error) {
  return std::unexpected("the file " + file.string() + " cannot be " + std::string(what) + ": " +
                         std::strerror(error));
}

std::unexpected<std::string> tooLarge(path const& file) {
  return std::unexpected("the file " + file.string() + " is too large");
}

int writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t const written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written == 0 ? EIO : errno;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

int writeToDisk(Descriptor& file, std::string_view bytes) {
  if (int const error = writeAll(file.get(), bytes)) return error;
  if (fsync(file.get()) != 0) return errno;
  return file.close() == 0 ? 0 : errno;
}

/// So that the new name outlives a loss of power too. Some file systems cannot, which is no failure.
void syncFolder(path const& folder) {
  Descriptor const handle(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (handle.isOpen()) fsync(handle.get());
}

/// Reads to the end, or one byte beyond `maxBytes`; nothing and `errno` when reading fails.
std::optional<std::string> readUpTo(int descriptor, std::size_t expected, std::size_t maxBytes) {
  std::string content;
  // One byte more tells the end without another round.
  std::size_t room = std::min(expected, maxBytes) + 1;
  for (;;) {
    std::size_t const begin = content.size();
    content.resize(begin + room);
    ssize_t const count = read(descriptor, content.data() + begin, room);
    content.resize(begin + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0 || content.size() > maxBytes) return content;
    room = std::min(std::size_t{64} << 10, maxBytes + 1 - content.size());
  }
}

/// What a writer that was killed has left beside `file`: ".NAME." and six letters, untouched for an hour.
void sweepLeftovers(path const& folder, std::string const& prefix) {
  constexpr std::size_t kLetters = 6;
  std::error_code ignored;
  auto const now = std::filesystem::file_time_type::clock::now();
  for (auto const& entry : std::filesystem::directory_iterator(folder, ignored)) {
    std::string const name = entry.path().filename().string();
    if (!name.starts_with(prefix) || name.size() != prefix.size() + kLetters) continue;
    auto const written = entry.last_write_time(ignored);
    if (!ignored && now - written > std::chrono::hours(1)) unlink(entry.path().c_str());
  }
}

}  // namespace

Result<std::string, std::string> readFile(path const& file, std::size_t maxBytes) {
  // A pipe in the file's place must not hold the program up.
  Descriptor const handle(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat about{};
  if (!handle.isOpen() || fstat(handle.get(), &about) != 0) return failure(file, "read", errno);
  if (!S_ISREG(about.st_mode)) {
    return std::unexpected("the file " + file.string() + " cannot be read: it is not a regular file");
  }
  auto const size = static_cast<std::size_t>(about.st_size);
  if (size > maxBytes) return tooLarge(file);
  auto content = readUpTo(handle.get(), size, maxBytes);
  if (!content) return failure(file, "read", errno);
  if (content->size() > maxBytes) return tooLarge(file);
  return std::move(*content);
}

Result<void, std::string> writeFileAtomically(path const& file, std::string_view bytes) {
  path const folder = file.has_parent_path() ? file.parent_path() : path(".");
  if (int const error = makePrivateFolders(folder)) return failure(file, "written", error);
  std::string const prefix = "." + file.filename().string() + ".";
  std::string name = (folder / (prefix + "XXXXXX")).string();
  Descriptor handle(mkostemp(name.data(), O_CLOEXEC));  // unique, readable by the user only
  if (!handle.isOpen()) return failure(file, "written", errno);
  fchmod(handle.get(), S_IRUSR | S_IWUSR);
  TemporaryName temporary(std::move(name));
  if (int const error = writeToDisk(handle, bytes)) return failure(file, "written", error);
  if (rename(temporary.text(), file.c_str()) != 0) return failure(file, "written", errno);
  temporary.release();
  syncFolder(folder);
  sweepLeftovers(folder, prefix);
  return {};
}

}  // namespace nimbara
