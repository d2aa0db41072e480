// The keys of the hive in the order of its file, each looked at where it stands.
#include "platform/key_walk.h"

#include "platform/posix/registry/registry_world.h"

namespace torvane {
namespace {

using namespace posix;

/// The values of more can't be gone through within a slice.
constexpr std::size_t kLongestText = std::size_t{512} << 10;

class HiveWalk : public KeyWalk {
 public:
  HiveWalk() { RegistryWorld::Instance().user().refresh(); }

  bool Next(WalkedKey& key) override {
    Hive& hive = RegistryWorld::Instance().user();
    if (generation_ != hive.generation()) {
      generation_ = hive.generation();
      root_ = hive.image().find(u"software");
      next_ = kRootKey;
    }
    HiveImage& image = hive.image();
    while (root_ && next_ < image.keyCount()) {
      const KeyId id = next_++;
      if (!image.isBelow(id, *root_) || image.textSize(id) > kLongestText) continue;
      key.firstNames = image.frontNames(id);
      if (key.firstNames.empty()) continue;
      key.path = image.path(id).substr(image.path(*root_).size() + 1);
      return true;
    }
    return false;
  }

 private:
  std::uint64_t generation_ = 0;
  std::optional<KeyId> root_;
  KeyId next_ = kRootKey;
};

}  // namespace

std::unique_ptr<KeyWalk> WalkKeys() {
  return std::make_unique<HiveWalk>();
}

}  // namespace torvane
