#include "platform/linux/dbus/service/search_objects.h"

#include <map>
#include <utility>
#include <vector>

namespace nimbara {

namespace {

constexpr char kRunner[] = "org.kde.krunner1";
constexpr char kShell[] = "org.gnome.Shell.SearchProvider2";
/// Krunner's types of matches: one among others, and the very thing.
constexpr std::int32_t kPossibleMatch = 30;
constexpr std::int32_t kExactMatch = 100;

using Texts = std::vector<std::string>;
using Properties = std::map<std::string, sdbus::Variant>;
using Match = sdbus::Struct<std::string, std::string, std::string, std::int32_t, double, Properties>;
using Action = sdbus::Struct<std::string, std::string, std::string>;

Match matchOf(SearchHit const& hit) {
  std::int32_t const type = hit.relevance >= 1 ? kExactMatch : kPossibleMatch;
  return Match(hit.id, textForBus(hit.title), hit.icon, type, hit.relevance,
               Properties{{"subtext", textForBus(hit.description)}});
}

Properties metaOf(SearchHit const& hit) {
  return {{"id", hit.id},
          {"name", textForBus(hit.title)},
          {"description", textForBus(hit.description)},
          {"gicon", hit.icon}};
}

std::string joined(Texts const& terms) {
  std::string text;
  for (std::string const& term : terms) text += (text.empty() ? "" : " ") + term;
  return text;
}

Texts identifiersOf(std::vector<SearchHit> const& hits) {
  Texts ids;
  ids.reserve(hits.size());
  for (SearchHit const& hit : hits) ids.push_back(hit.id);
  return ids;
}

}  // namespace

RunnerObject::RunnerObject(sdbus::IConnection& connection, ServiceFace& face, CallGate& gate)
    : face_(face), gate_(gate), object_(sdbus::createObject(connection, kRunnerPath)) {
  describeMatches();
  describeRuns();
  object_->finishRegistration();
}

void RunnerObject::describeMatches() {
  object_->registerMethod("Match")
      .onInterface(kRunner)
      .withInputParamNames("query")
      .withOutputParamNames("matches")
      .implementedAs([this](std::string const& query) {
        gate_.admit(*object_, query);
        std::vector<Match> matches;
        for (SearchHit const& hit : face_.search(query)) matches.push_back(matchOf(hit));
        return matches;
      });
  // One thing can be done with a place: to open it.
  object_->registerMethod("Actions").onInterface(kRunner).withOutputParamNames("actions").implementedAs(
      [] { return std::vector<Action>(); });
  object_->registerMethod("Config").onInterface(kRunner).withOutputParamNames("config").implementedAs(
      [] { return Properties{{"MinLetterCount", std::int32_t(2)}}; });
}

void RunnerObject::describeRuns() {
  object_->registerMethod("SetActivationToken")
      .onInterface(kRunner)
      .withInputParamNames("token")
      .implementedAs([this](std::string const& token) {
        gate_.admit(*object_);
        token_ = tokenForUse(token);
      });
  object_->registerMethod("Run")
      .onInterface(kRunner)
      .withInputParamNames("matchId", "actionId")
      .implementedAs([this](std::string const& id, std::string const&) {
        gate_.admit(*object_, id);
        face_.open(id, std::exchange(token_, {}));
      });
  object_->registerMethod("Teardown").onInterface(kRunner).implementedAs([] {});
}

ShellSearchObject::ShellSearchObject(sdbus::IConnection& connection, ServiceFace& face, CallGate& gate)
    : face_(face), gate_(gate), object_(sdbus::createObject(connection, kSearchPath)) {
  describeSearch();
  describeActivation();
  object_->finishRegistration();
}

void ShellSearchObject::describeSearch() {
  object_->registerMethod("GetInitialResultSet")
      .onInterface(kShell)
      .withInputParamNames("terms")
      .withOutputParamNames("results")
      .implementedAs([this](Texts const& terms) {
        gate_.admit(*object_, terms);
        return identifiersOf(face_.search(joined(terms)));
      });
  // The whole text is looked for anew: more letters may mean another city.
  object_->registerMethod("GetSubsearchResultSet")
      .onInterface(kShell)
      .withInputParamNames("previousResults", "terms")
      .withOutputParamNames("results")
      .implementedAs([this](Texts const&, Texts const& terms) {
        gate_.admit(*object_, terms);
        return identifiersOf(face_.search(joined(terms)));
      });
  object_->registerMethod("GetResultMetas")
      .onInterface(kShell)
      .withInputParamNames("identifiers")
      .withOutputParamNames("metas")
      .implementedAs([this](Texts const& ids) {
        gate_.admit(*object_, ids);
        std::vector<Properties> metas;
        for (std::string const& id : ids) {
          if (auto const hit = face_.found(id)) metas.push_back(metaOf(*hit));
        }
        return metas;
      });
}

void ShellSearchObject::describeActivation() {
  object_->registerMethod("ActivateResult")
      .onInterface(kShell)
      .withInputParamNames("identifier", "terms", "timestamp")
      .implementedAs([this](std::string const& id, Texts const&, std::uint32_t) {
        gate_.admit(*object_, id);
        face_.open(id, {});
      });
  object_->registerMethod("LaunchSearch")
      .onInterface(kShell)
      .withInputParamNames("terms", "timestamp")
      .implementedAs([this](Texts const&, std::uint32_t) {
        gate_.admit(*object_);
        face_.open({}, {});
      });
}

}  // namespace nimbara
