// The program for the searches of the two large desktops: Plasma's KRunner (org.kde.krunner1) and the
// overview of GNOME Shell (org.gnome.Shell.SearchProvider2). Both ask the face, which answers from memory.
#pragma once

#include "platform/linux/dbus/service/call_gate.h"
#include "platform/session/session_service.h"

#include <memory>
#include <sdbus-c++/sdbus-c++.h>
#include <string>

namespace nimbara {

inline constexpr char kRunnerPath[] = "/io/github/nimbara/Nimbara/Runner";
inline constexpr char kSearchPath[] = "/io/github/nimbara/Nimbara/SearchProvider";

class RunnerObject {
 public:
  RunnerObject(sdbus::IConnection& connection, ServiceFace& face, CallGate& gate);

 private:
  void describeMatches();
  void describeRuns();

  ServiceFace& face_;
  CallGate& gate_;
  std::string token_;  ///< of the person's click, for the run that follows
  std::unique_ptr<sdbus::IObject> object_;
};

class ShellSearchObject {
 public:
  ShellSearchObject(sdbus::IConnection& connection, ServiceFace& face, CallGate& gate);

 private:
  void describeSearch();
  void describeActivation();

  ServiceFace& face_;
  CallGate& gate_;
  std::unique_ptr<sdbus::IObject> object_;
};

}  // namespace nimbara
