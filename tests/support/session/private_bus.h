// A message bus of a test's own: a dbus-daemon on a socket in a temporary directory, ended with the object.
#pragma once

#include "support/temporary_folder.h"

#include <string>
#include <sys/types.h>

namespace nimbara::test {

class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  PrivateBus(PrivateBus const&) = delete;
  PrivateBus& operator=(PrivateBus const&) = delete;

  std::string const& address() const { return address_; }
  void end();

 private:
  TemporaryFolder directory_;
  pid_t daemon_ = -1;
  std::string address_;
};

}  // namespace nimbara::test
