// The kernel's notices of new routes: how to hear of a network where no NetworkManager tells of it.
#pragma once

#include <cstddef>
#include <span>

namespace nimbara {

class NetworkNotices {
 public:
  NetworkNotices();
  ~NetworkNotices();
  NetworkNotices(NetworkNotices const&) = delete;
  NetworkNotices& operator=(NetworkNotices const&) = delete;

  /// Readable when there is a notice; negative when the kernel gives none.
  int descriptor() const { return descriptor_; }
  /// Reads all notices; true when one told of a new default route.
  bool drain() const;

 private:
  int descriptor_;
};

/// True when one of the netlink messages in `bytes` adds a default route. Any bytes may be given.
bool announcesDefaultRoute(std::span<std::byte const> bytes);

}  // namespace nimbara
