// The registry of the prefix: which hive holds a key, and the keys that are open.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/registry/hive.h"
#include "platform/winapi.h"

namespace torvane::posix {

/// Where a key lies: a hive and the path in it, symbolic links followed.
struct KeyPlace {
  Hive* hive = nullptr;
  std::u16string path;
};

/// A key behind a handle.
class OpenKey {
 public:
  /// `known` is the key in the hive, where that has been looked up.
  OpenKey(KeyPlace place, REGSAM rights, std::optional<KeyId> known)
      : place_(std::move(place)),
        rights_(rights),
        generation_(place_.hive->generation()),
        known_(known) {}

  Hive& hive() const { return *place_.hive; }
  const std::u16string& path() const { return place_.path; }
  bool allows(REGSAM rights) const { return (rights_ & rights) == rights; }
  /// The key in the hive as it is now; nothing if it has gone.
  std::optional<KeyId> find();

 private:
  KeyPlace place_;
  REGSAM rights_;
  std::uint64_t generation_;
  std::optional<KeyId> known_;
};

/// The prefix's three hives and the open keys. There is one, made on first use and dropped by
/// ForgetWorld().
class RegistryWorld {
 public:
  /// Throws PrefixError where there is no prefix.
  static RegistryWorld& Instance();

  RegistryWorld();

  Hive& user() { return user_; }
  Hive& machine() { return machine_; }
  Hive& own() { return own_; }

  /// The key behind a handle, null for a bad one. Valid until the next key is opened or closed. The
  /// predefined keys are open with all rights.
  OpenKey* key(HKEY handle);
  HKEY add(KeyPlace place, REGSAM rights, KeyId known);
  /// Gives false for a bad handle.
  bool close(HKEY handle);

  /// The place of a path below an open key, its hive as it is on disk; nothing where a symbolic
  /// link on the way leads nowhere.
  std::optional<KeyPlace> locate(const OpenKey& parent, std::u16string path);

 private:
  std::optional<KeyPlace> follow(KeyPlace place);

  Hive user_;
  Hive machine_;
  Hive own_;
  struct Handle {
    std::intptr_t number;
    OpenKey key;
  };
  std::vector<Handle>::iterator findHandle(HKEY handle);
  std::vector<Handle> keys_;  ///< by number, the predefined ones, which are negative, in front
};

}  // namespace torvane::posix
