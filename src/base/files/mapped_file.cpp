#include "base/files/mapped_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbara {

namespace {

std::string cannotRead(std::filesystem::path const& file, std::string_view why) {
  return "the file " + file.string() + " cannot be read: " + std::string(why);
}

Result<std::string_view, std::string> mapped(int descriptor, std::size_t maxBytes) {
  struct stat about{};
  if (fstat(descriptor, &about) != 0) return std::unexpected(std::strerror(errno));
  if (!S_ISREG(about.st_mode)) return std::unexpected("it is not a regular file");
  auto const size = static_cast<std::size_t>(about.st_size);
  if (size > maxBytes) return std::unexpected("it is too large");
  if (size == 0) return std::string_view();
  void* const address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (address == MAP_FAILED) return std::unexpected(std::strerror(errno));
  madvise(address, size, MADV_RANDOM);  // otherwise the neighbours of every page come in too
  return std::string_view(static_cast<char const*>(address), size);
}

}  // namespace

Result<MappedFile, std::string> MappedFile::open(std::filesystem::path const& file, std::size_t maxBytes) {
  int const descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return std::unexpected(cannotRead(file, std::strerror(errno)));
  auto const bytes = mapped(descriptor, maxBytes);
  ::close(descriptor);
  if (!bytes) return std::unexpected(cannotRead(file, bytes.error()));
  return MappedFile(*bytes);
}

MappedFile::~MappedFile() {
  if (!bytes_.empty()) munmap(const_cast<char*>(bytes_.data()), bytes_.size());
}

}  // namespace nimbara
