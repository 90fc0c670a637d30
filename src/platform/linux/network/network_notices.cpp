#include "platform/linux/network/network_notices.h"

#include <array>
#include <cstring>
#include <linux/rtnetlink.h>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

namespace nimbara {

namespace {

template <class T>
std::optional<T> readAt(std::span<std::byte const> bytes, std::size_t at) {
  T value;
  if (bytes.size() < at || bytes.size() - at < sizeof value) return std::nullopt;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

bool isDefaultRoute(std::span<std::byte const> message) {
  auto const route = readAt<rtmsg>(message, NLMSG_HDRLEN);
  return route && route->rtm_dst_len == 0 && route->rtm_type == RTN_UNICAST &&
         route->rtm_table == RT_TABLE_MAIN;
}

}  // namespace

NetworkNotices::NetworkNotices()
    : descriptor_(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)) {
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
  bool const bound =
      descriptor_ >= 0 && bind(descriptor_, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0;
  if (bound || descriptor_ < 0) return;
  close(descriptor_);
  descriptor_ = -1;
}

NetworkNotices::~NetworkNotices() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool NetworkNotices::drain() const {
  std::array<std::byte, 16'384> buffer;
  bool announced = false;
  for (ssize_t size = 0; (size = recv(descriptor_, buffer.data(), buffer.size(), 0)) > 0;) {
    announced = announcesDefaultRoute(std::span(buffer).first(static_cast<std::size_t>(size))) || announced;
  }
  return announced;
}

bool announcesDefaultRoute(std::span<std::byte const> bytes) {
  while (auto const header = readAt<nlmsghdr>(bytes, 0)) {
    if (header->nlmsg_len < NLMSG_HDRLEN || header->nlmsg_len > bytes.size()) return false;
    if (header->nlmsg_type == RTM_NEWROUTE && isDefaultRoute(bytes.first(header->nlmsg_len))) return true;
    bytes = bytes.subspan(std::min<std::size_t>(NLMSG_ALIGN(header->nlmsg_len), bytes.size()));
  }
  return false;
}

}  // namespace nimbara
