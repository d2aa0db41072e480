// A handle is a number that is never given out twice, so that one that was closed, or belongs to a
// forgotten world, is known as bad.
#include "platform/posix/registry/registry_world.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/registry/registry.h"
#include "platform/posix/text/letter_case.h"

namespace torvane::posix {
namespace {

constexpr std::u16string_view kOwnKey = u"software\\halvex\\torvane";
constexpr std::u16string_view kMachineTarget = u"\\registry\\machine\\";
constexpr std::u16string_view kUserTarget = u"\\registry\\user\\";
constexpr REGSAM kAllRights = 0xF003F;

std::unique_ptr<RegistryWorld>& World() {
  static std::unique_ptr<RegistryWorld> world;
  return world;
}

/// Outlives the worlds, see above.
std::intptr_t& HandleCounter() {
  static std::intptr_t counter = 0;
  return counter;
}

const AtForget kForgetRegistry([] { World().reset(); });

/// Whether `path` is the key that `folded` names or lies below it.
bool IsWithin(std::u16string_view path, std::u16string_view folded) {
  if (path.size() < folded.size()) return false;
  for (std::size_t i = 0; i < folded.size(); ++i)
    if (FoldCase(path[i]) != folded[i]) return false;
  return path.size() == folded.size() || path[folded.size()] == u'\\';
}

std::u16string Joined(std::u16string_view parent, std::u16string_view path) {
  std::u16string joined(parent);
  if (!parent.empty() && !path.empty()) joined += u'\\';
  return joined.append(path);
}

std::u16string TextOf(const ValueData& data) {
  std::u16string text = UnitsOf(data.bytes);
  if (!text.empty() && text.back() == u'\0') text.pop_back();
  return text;
}

}  // namespace

std::optional<KeyId> OpenKey::find() {
  Hive& hive = *place_.hive;
  // The other keys saw to this when they were opened.
  if (place_.path.empty()) hive.refresh();
  // A key that isn't there may come to be through another handle.
  if (!known_ || generation_ != hive.generation()) {
    known_ = hive.image().find(place_.path);
    generation_ = hive.generation();
  }
  return known_;
}

RegistryWorld& RegistryWorld::Instance() {
  auto& world = World();
  if (!world) world = std::make_unique<RegistryWorld>();
  return *world;
}

RegistryWorld::RegistryWorld()
    : user_(PrefixRoot() / "user.reg", HiveRole::User),
      machine_(PrefixRoot() / "system.reg", HiveRole::Machine),
      own_(PrefixRoot() / "torvane.reg", HiveRole::Own) {
  const auto addPredefined = [this](HKEY handle, Hive& hive) {
    keys_.push_back({reinterpret_cast<std::intptr_t>(handle),
                     OpenKey({&hive, std::u16string()}, kAllRights, std::nullopt)});
  };
  addPredefined(HKEY_CURRENT_USER, user_);
  addPredefined(HKEY_LOCAL_MACHINE, machine_);
}

std::vector<RegistryWorld::Handle>::iterator RegistryWorld::findHandle(HKEY handle) {
  const auto number = reinterpret_cast<std::intptr_t>(handle);
  const auto found = std::lower_bound(
      keys_.begin(), keys_.end(), number,
      [](const Handle& open, std::intptr_t wanted) { return open.number < wanted; });
  return found != keys_.end() && found->number == number ? found : keys_.end();
}

OpenKey* RegistryWorld::key(HKEY handle) {
  const auto found = findHandle(handle);
  return found == keys_.end() ? nullptr : &found->key;
}

HKEY RegistryWorld::add(KeyPlace place, REGSAM rights, KeyId known) {
  constexpr std::intptr_t kStep = 4;
  HandleCounter() += kStep;
  keys_.push_back({HandleCounter(), OpenKey(std::move(place), rights, known)});
  return reinterpret_cast<HKEY>(HandleCounter());
}

bool RegistryWorld::close(HKEY handle) {
  if (handle == HKEY_CURRENT_USER || handle == HKEY_LOCAL_MACHINE) return true;
  const auto found = findHandle(handle);
  if (found == keys_.end()) return false;
  keys_.erase(found);
  return true;
}

std::optional<KeyPlace> RegistryWorld::locate(const OpenKey& parent, std::u16string path) {
  if (!parent.path().empty()) path = Joined(parent.path(), path);
  return follow({&parent.hive(), std::move(path)});
}

std::optional<KeyPlace> RegistryWorld::follow(KeyPlace place) {
  constexpr int kMostLinks = 16;
  for (int i = 0; i < kMostLinks; ++i) {
    if (place.hive == &user_ && IsWithin(place.path, kOwnKey)) place.hive = &own_;
    place.hive->refresh();
    const auto link = place.hive->image().findLink(place.path);
    if (!link) return place;
    std::u16string_view rest = std::u16string_view(place.path).substr(link->pathLength);
    if (!rest.empty()) rest.remove_prefix(1);
    std::u16string_view target = link->target;
    if (IsWithin(target, kMachineTarget.substr(0, kMachineTarget.size() - 1))) {
      target.remove_prefix(std::min(target.size(), kMachineTarget.size()));
      place = {&machine_, Joined(target, rest)};
    } else if (IsWithin(target, kUserTarget.substr(0, kUserTarget.size() - 1))) {
      // The next part is the user's number; there is one user in a prefix.
      target.remove_prefix(std::min(target.size(), kUserTarget.size()));
      target.remove_prefix(std::min(target.size(), target.find(u'\\')));
      if (!target.empty()) target.remove_prefix(1);
      place = {&user_, Joined(target, rest)};
    } else {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

std::optional<std::u16string> MachineText(std::u16string_view keyPath,
                                          std::u16string_view valueName) {
  RegistryWorld& world = RegistryWorld::Instance();
  const auto place = world.locate(*world.key(HKEY_LOCAL_MACHINE), std::u16string(keyPath));
  if (!place) return std::nullopt;
  HiveImage& image = place->hive->image();
  const auto key = image.find(place->path);
  if (!key) return std::nullopt;
  const auto value = image.values(*key).find(valueName);
  if (!value) return std::nullopt;
  const ValueData data = DecodeData(value->data);
  if (data.type != REG_SZ && data.type != REG_EXPAND_SZ) return std::nullopt;
  return TextOf(data);
}

std::vector<std::string> HiveProblems(Hives which) {
  RegistryWorld& world = RegistryWorld::Instance();
  std::vector<std::string> problems;
  for (Hive* hive : {&world.user(), &world.machine(), &world.own()}) {
    if (hive == &world.machine() && which == Hives::Written) continue;
    hive->refresh();
    if (std::string problem = hive->problem(); !problem.empty())
      problems.push_back(std::move(problem));
  }
  return problems;
}

}  // namespace torvane::posix
