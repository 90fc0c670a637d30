// The commands of the hazard feeds: what they take and what runs them.
#pragma once

#include <optional>
#include <string>

namespace nimbara {

struct CommandLine;
struct Session;

struct FeedOptions {
  std::string place;         ///< of nws, --near of quakes, --place of kp
  std::string view = "all";  ///< of nws: all, convective or flood
  std::string country;       ///< of nws: in place of what the gazetteer says
  bool isNear = false;       ///< quakes: only those around `place`
  double radiusKm = 500;     ///< around it
  std::optional<double> minMagnitude;
  std::string order = "time";    ///< of quakes
  std::optional<double> radius;  ///< of fires and lightning, km; otherwise the one that suits them
  std::string activity;          ///< of advice: it alone
  bool speak = false;
  std::string source;                     ///< of advisories; empty: the one of the setting
  bool isWorld = false;                   ///< advisories: of all countries
  std::string listen = "127.0.0.1:8088";  ///< of feed-server
  bool json = false;
};

int runNws(CommandLine const& line, Session const& session);
int runQuakes(CommandLine const& line, Session const& session);
int runAir(CommandLine const& line, Session const& session);
int runClimate(CommandLine const& line, Session const& session);
int runStorms(CommandLine const& line, Session const& session);
int runFires(CommandLine const& line, Session const& session);
int runLightning(CommandLine const& line, Session const& session);
int runAdvisories(CommandLine const& line, Session const& session);
int runAdvice(CommandLine const& line, Session const& session);
int runBrief(CommandLine const& line, Session const& session);
int runKp(CommandLine const& line, Session const& session);
int runFeedServer(CommandLine const& line, Session const& session);

}  // namespace nimbara
