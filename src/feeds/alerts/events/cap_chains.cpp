#include "feeds/alerts/events/cap_chains.h"

#include "feeds/alerts/events/cap_blocks.h"
#include "feeds/alerts/events/cap_groups.h"
#include "feeds/alerts/events/cap_keys.h"
#include "feeds/alerts/events/cap_likeness.h"
#include "feeds/cap/cap_language.h"

#include <algorithm>
#include <map>
#include <ranges>
#include <set>
#include <unordered_map>

namespace nimbara {

namespace {

/// More messages of one text are no translations of one another.
constexpr std::size_t kMostTranslations = 40;
/// An event is split into a few parts.
constexpr std::size_t kMostParts = 16;
/// What is remembered of a chain beside its beginning.
constexpr std::size_t kMostLinks = 200;

/// A key that a message has or refers to, or a root that is known from before.
struct Node {
  CapKey key;
  std::optional<Instant> sent;
  bool isListed = false;
  EventRoot const* known = nullptr;
  std::string_view root = {};  ///< the text of one that is only known

  std::string text() const { return root.empty() ? key.text() : std::string(root); }
};

struct Member {
  CapMessage const* message = nullptr;
  Reach reach = Reach::elsewhere;
  std::size_t node = 0;
  std::vector<std::size_t> older;  ///< nodes that it refers to, without itself
  std::size_t position = 0;        ///< in the list

  CapAlert const& alert() const { return *message->alert; }
};

/// A message of no known time is older than all others; of equal times the end comes last, then what is
/// listed later.
bool isNewer(Member const* a, Member const* b) {
  auto const rank = [](Member const* m) { return std::tuple(m->alert().sent, endsEvent(m->alert())); };
  return rank(a) != rank(b) ? rank(a) > rank(b) : a->position < b->position;
}

class Chains {
 public:
  Chains(std::span<PlacedMessage const> messages, KnownEvents const& known) : known_(known) {
    members_.reserve(messages.size());
    nodes_.reserve(2 * messages.size());
    byKey_.reserve(2 * messages.size());
    for (PlacedMessage const& message : messages) add(message);
    joinKnown();
    joinTranslations();
    joinLikes();
    joinMoved();
  }

  std::vector<CapChain> list() {
    std::set<std::size_t> concerned;
    for (Member const& member : members_) {
      bool const isBareEnd = member.alert().infos.empty();
      if (member.reach != Reach::elsewhere || (isBareEnd && isKnown(member)))
        concerned.insert(groups_.of(member.node));
    }
    std::map<std::size_t, std::vector<Member const*>> byGroup;
    for (Member const& member : members_) {
      if (concerned.contains(groups_.of(member.node))) byGroup[groups_.of(member.node)].push_back(&member);
    }
    std::map<std::size_t, std::vector<Node const*>> nodes;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      if (concerned.contains(groups_.of(i))) nodes[groups_.of(i)].push_back(&nodes_[i]);
    }
    std::vector<std::pair<std::size_t, CapChain>> chains;
    for (std::size_t const group : concerned) append(chains, byGroup[group], nodes[group]);
    std::ranges::stable_sort(chains, {}, [](auto const& chain) { return chain.first; });
    std::vector<CapChain> list;
    list.reserve(chains.size());
    for (auto& [position, chain] : chains) list.push_back(std::move(chain));
    return list;
  }

 private:
  std::size_t nodeOf(CapKey const& key) {
    auto const [entry, isNew] = byKey_.try_emplace(key, nodes_.size());
    if (isNew) addNode({key, {}, false, nullptr});
    return entry->second;
  }

  std::size_t nodeOfRoot(std::string const& root) {
    if (auto const found = byKey_.find(std::string_view(root)); found != byKey_.end()) return found->second;
    auto const [entry, isNew] = roots_.try_emplace(root, nodes_.size());
    if (!isNew) return entry->second;
    auto const found = known_.roots.find(root);
    EventRoot const* const known = found == known_.roots.end() ? nullptr : &found->second;
    addNode({{}, known == nullptr ? std::nullopt : known->sent, false, known, root});
    return entry->second;
  }

  void addNode(Node const& node) {
    nodes_.push_back(node);
    groups_.add();
  }

  void add(PlacedMessage const& placed) {
    CapAlert const& alert = *placed.message->alert;
    std::size_t const own = nodeOf(keyOf(alert));
    if (isListedAgain(own, placed)) return;
    joinNameless(own, alert);
    Node& node = nodes_[own];
    node.isListed = true;
    node.sent = std::max(node.sent, alert.sent);
    Member member{placed.message, placed.reach, own, {}, members_.size()};
    for (CapReference const& reference : alert.references) {
      std::size_t const older = nodeOf(keyOf(reference, alert));
      if (older == own) continue;
      if (!nodes_[older].sent) nodes_[older].sent = reference.sent;
      groups_.join(own, older);
      member.older.push_back(older);
    }
    members_.push_back(std::move(member));
  }

  /// Before its document could be fetched a message was known without its sender.
  void joinNameless(std::size_t own, CapAlert const& alert) {
    // A shorter one may be anybody's.
    constexpr std::size_t kLeastIdentifier = 8;
    if (alert.sender.empty() || alert.identifier.size() < kLeastIdentifier) return;
    CapKey const nameless{{}, alert.identifier};
    if (known_.roots.contains(nameless.text())) groups_.join(own, nodeOf(nameless));
  }

  /// The same message once more; what the source found out by itself may stand in either.
  bool isListedAgain(std::size_t node, PlacedMessage const& placed) {
    if (!nodes_[node].isListed) return false;
    auto const same = std::ranges::find_if(members_, [&](Member const& member) {
      return member.node == node && member.alert().sent == placed.message->alert->sent;
    });
    if (same == members_.end()) return false;
    if (placed.reach > same->reach) {
      same->message = placed.message;
      same->reach = placed.reach;
    }
    return true;
  }

  void joinKnown() {
    for (auto const& [key, known] : known_.roots) {
      auto const found = byKey_.find(std::string_view(key));
      if (found == byKey_.end()) continue;
      Node& node = nodes_[found->second];
      node.known = &known;
      if (!node.sent) node.sent = known.sent;
      groups_.join(nodeOfRoot(known.root), found->second);
    }
  }

  void joinTranslations() {
    for (std::size_t i = 0; i < members_.size(); ++i) texts_.add();
    std::map<std::string, std::vector<std::size_t>> byText;
    for (Member const& member : members_) {
      if (member.reach == Reach::elsewhere || member.alert().infos.empty()) continue;
      byText[languageFreeText(member.alert())].push_back(member.position);
    }
    for (auto const& [text, alike] : byText) {
      if (alike.size() > 1 && alike.size() <= kMostTranslations) joinTranslations(alike);
    }
  }

  void joinTranslations(std::vector<std::size_t> const& alike) {
    for (std::size_t const one : alike) {
      std::vector<std::size_t> perhaps;
      std::set<std::string> languages;
      for (std::size_t const other : alike) {
        auto const translation = translationOf(members_[one].alert(), members_[other].alert());
        if (translation == Translation::surely) joinTexts(one, other);
        if (translation != Translation::perhaps) continue;
        perhaps.push_back(other);
        languages.insert(languageTag(members_[other].alert().infos.front().language));
      }
      // Two in one language are two events, and nobody knows of which this one is the translation.
      if (perhaps.size() != languages.size()) continue;
      for (std::size_t const other : perhaps) joinTexts(one, other);
    }
  }

  void joinTexts(std::size_t a, std::size_t b) {
    texts_.join(a, b);
    groups_.join(members_[a].node, members_[b].node);
  }

  /// Neither it nor what it refers to is known.
  bool isAlone(Member const& member) const {
    return !isKnown(member) &&
           std::ranges::none_of(member.older, [&](std::size_t n) { return nodes_[n].isListed; });
  }

  /// Messages that lead nowhere, issued anew.
  void joinLikes() {
    std::map<std::string, std::map<std::size_t, std::optional<Instant>>> byLikeness;
    for (Member const& member : members_) {
      if (member.reach == Reach::elsewhere || member.alert().infos.empty() || !isAlone(member)) continue;
      Likeness const likeness = likenessOf(member.alert());
      auto& sent = byLikeness[likeness.text][groups_.of(member.node)];
      sent = std::max(sent, member.alert().sent);
      if (!likeness.hasHour) continue;
      auto const known = known_.roots.find(shortened(likeness.text));
      if (known != known_.roots.end()) groups_.join(nodeOfRoot(known->second.root), member.node);
    }
    for (auto const& [text, groups] : byLikeness) {
      std::set<std::optional<Instant>> times;
      for (auto const& [group, sent] : groups) times.insert(sent);
      // Sent at once they are several.
      if (times.size() != groups.size()) continue;
      for (auto const& [group, sent] : groups) groups_.join(groups.begin()->first, group);
    }
  }

  /// Updates of what is no longer listed, where the source does not say of what: of the same kind and areas,
  /// in a period that goes on from the known one.
  void joinMoved() {
    for (Member const& member : members_) {
      bool const mayFollow = member.message->lacksReferences && member.reach != Reach::elsewhere &&
                             isUpdate(member.alert()) && !isOfKnown(member.node);
      if (!mayFollow) continue;
      for (KnownEvent const* const event :
           periodsBeside(known_, shortened(likenessOf(member.alert()).timeless), periodOf(member.alert()))) {
        std::size_t const root = nodeOfRoot(event->root);
        if (isListed(root)) continue;
        groups_.join(root, member.node);
        break;
      }
    }
  }

  bool isOfKnown(std::size_t node) {
    for (std::size_t other = 0; other < nodes_.size(); ++other) {
      if (nodes_[other].known != nullptr && groups_.of(other) == groups_.of(node)) return true;
    }
    return false;
  }

  /// Something in the list is of that event.
  bool isListed(std::size_t node) {
    return std::ranges::any_of(
        members_, [&](Member const& member) { return groups_.of(member.node) == groups_.of(node); });
  }

  bool isKnown(Member const& member) const {
    auto const has = [&](std::size_t node) { return nodes_[node].known != nullptr; };
    return has(member.node) || std::ranges::any_of(member.older, has);
  }

  /// Those that no other message follows.
  std::vector<Member const*> headsOf(std::vector<Member const*> const& members) const {
    std::map<std::size_t, std::vector<Member const*>> followers;
    for (Member const* const member : members) {
      followers[member->node].push_back(member);  // a later message under the same identifier
      for (std::size_t const older : member->older) followers[older].push_back(member);
    }
    std::vector<Member const*> heads;
    for (Member const* const member : members) {
      bool const isFollowed = std::ranges::any_of(followers[member->node], [&](Member const* other) {
        bool const isMutual =
            other->node == member->node || std::ranges::count(member->older, other->node) > 0;
        return other != member && (!isMutual || isNewer(other, member));
      });
      if (!isFollowed) heads.push_back(member);
    }
    if (heads.empty()) heads = members;
    std::ranges::sort(heads, isNewer);
    return heads;
  }

  std::set<std::size_t> olderThan(Member const* member, std::vector<Member const*> const& members) const {
    std::set<std::size_t> found;
    std::vector<std::size_t> open = member->older;
    while (!open.empty()) {
      std::size_t const node = open.back();
      open.pop_back();
      if (!found.insert(node).second) continue;
      for (Member const* const other : members) {
        if (other->node == node) open.insert(open.end(), other->older.begin(), other->older.end());
      }
    }
    return found;
  }

  /// What a cancellation that says no more than that was about.
  static CapAlert const* saidBy(Member const* member, std::vector<Member const*> const& members) {
    if (!member->alert().infos.empty()) return &member->alert();
    for (Member const* const other : members) {
      if (std::ranges::count(member->older, other->node) > 0 && !other->alert().infos.empty())
        return &other->alert();
    }
    return nullptr;
  }

  /// Both follow one message, each in an area of its own.
  bool arePartsOfOne(Member const* a, Member const* b, std::vector<Member const*> const& members) const {
    auto const one = olderThan(a, members);
    auto const other = olderThan(b, members);
    if (!std::ranges::any_of(one, [&](std::size_t node) { return other.contains(node); })) return false;
    CapAlert const* const said = saidBy(a, members);
    CapAlert const* const saidToo = saidBy(b, members);
    return said != nullptr && saidToo != nullptr && !haveCommonArea(*said, *saidToo);
  }

  void append(std::vector<std::pair<std::size_t, CapChain>>& chains,
              std::vector<Member const*> const& members, std::vector<Node const*> const& nodes) {
    if (members.empty()) return;
    std::vector<Member const*> const heads = headsOf(members);
    std::vector<Member const*> parts;
    for (Member const* const head : heads | std::views::take(kMostParts)) {
      bool const isApart = std::ranges::all_of(parts, [&](Member const* part) {
        return texts_.of(part->position) != texts_.of(head->position) && arePartsOfOne(part, head, members);
      });
      if (isApart) parts.push_back(head);
    }
    std::set<std::size_t> taken;
    for (Member const* const part : parts) taken.insert(texts_.of(part->position));
    std::vector<Member const*> before;
    for (Member const* const member : members) {
      if (!taken.contains(texts_.of(member->position))) before.push_back(member);
    }
    std::ranges::sort(before, isNewer);
    for (Member const* const part : parts)
      chains.emplace_back(part->position, chainOf(part, members, before, nodes));
  }

  CapChain chainOf(Member const* part, std::vector<Member const*> const& members,
                   std::vector<Member const*> const& before, std::vector<Node const*> const& nodes) {
    CapChain chain;
    chain.holding.push_back(part->message);
    for (Member const* const member : members) {
      if (member != part && texts_.of(member->position) == texts_.of(part->position))
        chain.holding.push_back(member->message);
    }
    for (Member const* const member : before) chain.before.push_back(member->message);
    chain.root = rootOf(nodes, chain.isKnown);
    std::vector<Node const*> newest = nodes;
    std::ranges::stable_sort(newest, std::ranges::greater{}, &Node::sent);
    for (Node const* const node : newest | std::views::take(kMostLinks))
      chain.links.push_back({node->text(), node->sent});
    Likeness const likeness = likenessOf(part->alert());
    if (likeness.hasHour) chain.likeness = shortened(likeness.text);
    if (part->message->lacksReferences && !part->alert().infos.empty()) {
      chain.timeless = shortened(likeness.timeless);
      chain.period = periodOf(part->alert());
    }
    return chain;
  }

  /// References whose time is not known are taken for younger than all others.
  static std::string rootOf(std::vector<Node const*> const& nodes, bool& isKnown) {
    auto const age = [](Node const* node) {
      Instant const unsaid = node->isListed ? Instant::min() : Instant::max();
      return std::tuple(node->known == nullptr, node->sent.value_or(unsaid), node->text());
    };
    Node const* const oldest = *std::ranges::min_element(nodes, {}, age);
    isKnown = oldest->known != nullptr;
    return isKnown ? oldest->known->root : oldest->text();
  }

  /// A country's outlines are long.
  static std::string shortened(std::string const& likeness) { return "like|" + govAlertId(likeness).text(); }

  KnownEvents const& known_;
  std::vector<Member> members_;
  std::vector<Node> nodes_;
  std::unordered_map<CapKey, std::size_t, CapKeyHash, CapKeyEqual> byKey_;
  std::unordered_map<std::string_view, std::size_t> roots_;  ///< nodes of those that are only known
  Groups groups_;                                            ///< of nodes: events
  Groups texts_;                                             ///< of members: one message in several languages
};

}  // namespace

std::vector<CapChain> chainsOf(std::span<PlacedMessage const> messages, KnownEvents const& known) {
  return Chains(messages, known).list();
}

}  // namespace nimbara
