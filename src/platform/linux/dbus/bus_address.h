// Where the buses are, and whether somebody answers there: asked before the library connects, which waits for
// a silent bus much longer than a program may.
#pragma once

#include <chrono>
#include <string>

namespace nimbara {

/// What the environment says, else the usual place.
std::string systemBusAddress();
std::string sessionBusAddress();

/// Whether one of the addresses ("unix:path=/run/bus;…") answers the first line of a conversation within
/// `limit`. True for kinds of addresses that only the library understands.
bool answersAt(std::string const& addresses, std::chrono::milliseconds limit);

}  // namespace nimbara
