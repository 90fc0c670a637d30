#include "feeds/alerts/events/cap_events.h"

#include "feeds/alerts/events/cap_blocks.h"
#include "feeds/alerts/events/cap_chains.h"
#include "feeds/alerts/events/cap_telling.h"

#include <algorithm>
#include <map>
#include <set>

namespace nimbara {

namespace {

/// Of an event without a stated end: so long after the message that ended it.
constexpr std::chrono::hours kLongestEnd{24};

/// By the best of the blocks, whatever they say and in whichever language.
Reach reachOf(CapMessage const& message, CapView const& view) {
  Reach best = Reach::elsewhere;
  for (CapInfo const& info : message.alert->infos) {
    if (best != Reach::here) best = std::max(best, whereaboutsOf(info.areas, message, view).reach);
  }
  return best;
}

/// What the answer becomes, event by event.
class Answer {
 public:
  Answer(CapView const& view, KnownEvents& known) : view_(view), known_(known) {}

  void add(CapChain const& chain) {
    CapAlert const& newest = *chain.holding.front()->alert;
    if (endsEvent(newest)) return callOff(chain, newest);
    std::vector<ToldEvent> events = toldEvents(blocksOf(chain.holding, view_), view_);
    nameAll(events, chain);
    for (ToldEvent& event : events) {
      if (event.reach == Reach::elsewhere) continue;
      if (event.isEnded) {
        callOff(chain, newest, event.words);
      } else {
        take(std::move(event), chain);
      }
    }
  }

  GovSourceAnswer finished() {
    countUpdates();
    return std::move(answer_);
  }

 private:
  void take(ToldEvent event, CapChain const& chain) {
    remember(chain);
    event.alert.id = idOf(event, chain);
    told_.push_back({chain.root, event.alert.id, event.alert.issued});
    (event.reach == Reach::unplaced ? answer_.unplaced : answer_.alerts).push_back(std::move(event.alert));
  }

  /// The event as it was before its issuer ended it; with `words` that one of several.
  void callOff(CapChain const& chain, CapAlert const& end, std::string_view words = {}) {
    for (ToldEvent& event : lastTold(chain)) {
      bool const isMeant = words.empty() || event.words == words;
      if (!isMeant || event.reach == Reach::elsewhere || isPast(event.alert, end)) continue;
      remember(chain);
      event.alert.id = idOf(event, chain);
      told_.push_back({chain.root, event.alert.id, event.alert.issued});
      if (end.sent) event.alert.issued = end.sent;
      answer_.calledOff.push_back(std::move(event.alert));
    }
  }

  /// By the last message that still warned, else by what the end says itself; else by nothing but its
  /// identifier.
  std::vector<ToldEvent> lastTold(CapChain const& chain) {
    for (CapMessage const* const message : chain.before) {
      if (endsEvent(*message->alert)) continue;
      std::vector<CapMessage const*> const one{message};
      auto events = toldEvents(blocksOf(one, view_), view_);
      std::erase_if(events, [](ToldEvent const& event) { return event.isEnded; });
      nameAll(events, chain);
      return events;
    }
    if (chain.holding.front()->alert->infos.empty()) return bareEvent(chain);
    auto events = toldEvents(blocksOf(chain.holding, view_), view_, true);
    std::erase_if(events, [&](ToldEvent const& event) { return !chain.isKnown && event.isGreen; });
    nameAll(events, chain);
    return events;
  }

  std::vector<ToldEvent> bareEvent(CapChain const& chain) {
    if (!chain.isKnown) return {};
    plain_[chain.root] = std::string();
    std::vector<ToldEvent> events(1);
    events.front().reach = Reach::here;
    return events;
  }

  bool isPast(WeatherAlert const& alert, CapAlert const& end) const {
    if (alert.expires) return *alert.expires <= view_.now;
    return end.sent && view_.now - *end.sent >= kLongestEnd;
  }

  /// Remembers by which words the events of a message go, so that each keeps its identifier when others join
  /// it. The one that began the chain has the chain's own.
  void nameAll(std::vector<ToldEvent> const& events, CapChain const& chain) {
    auto const isFirst = [&](ToldEvent const& event) {
      auto const found = known_.roots.find(nameOf(event, chain));
      return found != known_.roots.end() && found->second.root == chain.root + kPlain;
    };
    auto first = std::ranges::find_if(events, isFirst);
    auto const isNew = [&](ToldEvent const& event) { return !known_.roots.contains(nameOf(event, chain)); };
    if (first == events.end()) first = std::ranges::find_if(events, isNew);
    auto& plain = plain_[chain.root];
    plain = first == events.end() ? std::nullopt : std::optional(first->words);
    bool const isTold =
        std::ranges::any_of(events, [](auto const& event) { return event.reach != Reach::elsewhere; });
    if (!isTold) return;
    for (ToldEvent const& event : events) {
      bool const isPlain = event.words == plain;
      noteRoot(known_, nameOf(event, chain), isPlain ? chain.root + kPlain : nameOf(event, chain), view_.now);
    }
  }

  static std::string nameOf(ToldEvent const& event, CapChain const& chain) {
    return chain.root + "\n" + event.words;
  }

  Uuid idOf(ToldEvent const& event, CapChain const& chain) {
    std::string key = "cap:" + chain.root;
    if (event.words != plain_[chain.root]) key += "\n" + event.words;
    Uuid id = govAlertId(key);
    // A part of an event that was split.
    if (!taken_.insert(id).second) {
      id = govAlertId(key + "\n" + event.alert.areaDesc.value_or(""));
      taken_.insert(id);
    }
    return id;
  }

  void remember(CapChain const& chain) {
    for (ChainLink const& link : chain.links) noteRoot(known_, link.key, chain.root, view_.now, link.sent);
    noteRoot(known_, chain.root, chain.root, view_.now);
    if (!chain.likeness.empty()) noteRoot(known_, chain.likeness, chain.root, view_.now);
    if (!chain.timeless.empty()) notePeriodOf(known_, chain.timeless, chain.period, chain.root, view_.now);
  }

  /// Messages of the chain after the first, told apart by when they were sent: translations are sent at once.
  void countUpdates() {
    std::map<std::string_view, std::set<Instant>> sent;
    for (Told const& told : told_) sent[told.root];
    if (sent.empty()) return;
    for (auto const& [key, entry] : known_.roots) {
      auto const found = sent.find(entry.root);
      if (entry.sent && found != sent.end()) found->second.insert(*entry.sent);
    }
    for (auto* const alerts : {&answer_.alerts, &answer_.unplaced, &answer_.calledOff}) {
      for (WeatherAlert& alert : *alerts) {
        auto const told = std::ranges::find(told_, alert.id, &Told::id);
        if (told == told_.end() || !told->sent) continue;
        auto const& all = sent[told->root];
        auto const count = std::distance(all.begin(), all.upper_bound(*told->sent));
        if (count > 1) alert.updates = static_cast<int>(count) - 1;
      }
    }
  }

  struct Told {
    std::string root;
    Uuid id;
    std::optional<Instant> sent;
  };

  static inline std::string const kPlain = "\nplain";

  CapView const& view_;
  KnownEvents& known_;
  GovSourceAnswer answer_;
  std::map<std::string, std::optional<std::string>>
      plain_;  ///< by root: the words of the event with the chain's own identifier
  std::set<Uuid> taken_;
  std::vector<Told> told_;
};

}  // namespace

GovSourceAnswer capEvents(std::span<CapMessage const> messages, CapView const& view, KnownEvents& known) {
  std::vector<PlacedMessage> placed;
  placed.reserve(messages.size());
  for (CapMessage const& message : messages) {
    if (message.alert && speaks(*message.alert)) placed.push_back({&message, reachOf(message, view)});
  }
  Answer answer(view, known);
  for (CapChain const& chain : chainsOf(placed, known)) answer.add(chain);
  return answer.finished();
}

}  // namespace nimbara
