#include "storage/file_lookups.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "platform/extras.h"
#include "platform/folder_search.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

bool IsSeparator(char16_t unit) {
  return unit == u'\\' || unit == u'/';
}

bool BeginsWithLetter(TextView path) {
  return path.size() >= 2 && path[1] == u':' &&
         ((path[0] >= u'A' && path[0] <= u'Z') || (path[0] >= u'a' && path[0] <= u'z'));
}

// Whether a search for the part finds an entry of that name and no other: one that it matches, one
// in another folder, or one that differs by what Windows drops from a name's end.
bool NamesOneEntry(TextView part) {
  constexpr TextView kOthers = u"/*?<>\"|:";
  if (part.empty() || part.back() == u'.' || part.back() == u' ') return false;
  // Letters and digits, which most are, stand behind all of these but the bar.
  return std::none_of(part.begin(), part.end(), [&](char16_t unit) {
    return (unit <= u'?' || unit == u'|') && kOthers.find(unit) != TextView::npos;
  });
}

// The root of a path behind its two leading separators; empty where there is only a server.
Text ShareOf(TextView path) {
  const auto server = std::find_if(path.begin(), path.end(), IsSeparator);
  if (server == path.end()) return {};
  const auto share = std::find_if(server + 1, path.end(), IsSeparator);
  if (server == path.begin() || share == server + 1) return {};
  return u"\\\\" + Text(path.begin(), server) + u'\\' + Text(server + 1, share) + u'\\';
}

// Where the root of a path ends whose parts are those between its backslashes: behind the drive's
// colon or the share's name.
std::size_t EndOfRoot(TextView path) {
  if (BeginsWithLetter(path)) return path.size() == 2 || path[2] == u'\\' ? 2 : TextView::npos;
  if (!path.starts_with(u"\\\\")) return TextView::npos;
  const std::size_t server = path.find(u'\\', 2);
  if (server == TextView::npos || !NamesOneEntry(path.substr(2, server - 2))) return server;
  return std::min(path.find(u'\\', server + 1), path.size());
}

// Whether a path closes with a pattern longer than any name, which would be held against each name
// of the folder.
bool IsEndlessPattern(TextView path) {
  constexpr std::size_t kLongestName = 255;
  const TextView name = path.substr(path.find_last_of(u"\\/") + 1);
  return name.size() > kLongestName && HasWildcard(name);
}

bool HasPlainParts(TextView path, std::size_t root) {
  for (std::size_t begin = root + 1; begin <= path.size();) {
    const std::size_t end = std::min(path.find(u'\\', begin), path.size());
    if (!NamesOneEntry(path.substr(begin, end - begin))) return false;
    begin = end + 1;
  }
  return true;
}

struct TextEqual {
  using is_transparent = void;
  bool operator()(TextView left, TextView right) const { return SameText(left, right); }
};
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(TextView text) const { return std::hash<TextView>()(text); }
};

// What is known of a folder under one spelling of its path.
struct Folder {
  enum class Kind {
    Known,    ///< entries are looked for in it
    Gone,     ///< it isn't there or is no folder
    Unasked,  ///< what lies below has to be looked for by its whole path
  };
  Kind kind;
  Text path;  ///< in long names as far as they are known, without a closing backslash
  const SearchRoot* root = nullptr;
  std::unique_ptr<FolderSearch> search = nullptr;
  bool isPlain = true;  ///< made of a root and plain names
};

bool IsThere(const SearchRoot& root) {
  return root.state() == SearchRoot::State::There;
}

}  // namespace

class LookupMemory {
 public:
  const Sight& Look(const Text& path) {
    const bool isKnown =
        SameText(path, path_) || (!path.empty() && SameText(path, sight_.longPath));
    if (!isKnown) {
      path_ = path;
      LookAnew();
    }
    return sight_;
  }

  /// Null for a path that begins with none.
  const SearchRoot* RootFor(TextView path) {
    const Text name = RootOf(path);
    if (name.empty()) return nullptr;
    auto& root = roots_[name];
    if (root) return root.get();
    const Text server = name.substr(0, name.find(u'\\', 2));
    const auto gone = goneServers_.find(server);
    root = gone == goneServers_.end() ? std::shared_ptr(LookAtRoot(name)) : gone->second;
    if (root->state() == SearchRoot::State::ServerGone) goneServers_.emplace(server, root);
    return root.get();
  }

 private:
  void LookAnew() {
    sight_.presence = Presence::Missing;
    sight_.isFolder = false;
    sight_.isPlain = false;
    sight_.longPath.clear();
    const TextView path = path_;
    const std::size_t cut = path.rfind(u'\\');
    const TextView name = path.substr(cut + 1);
    const SearchRoot* root = nullptr;
    if (cut != TextView::npos && NamesOneEntry(name)) {
      const Folder& folder = FolderOf(path.substr(0, cut));
      root = folder.root;
      sight_.isPlain = folder.isPlain;
      if (folder.kind == Folder::Kind::Known) Find(folder, name);
      if (folder.kind == Folder::Kind::Unasked) AskSystem(folder.path + Text(path.substr(cut)));
    } else {
      root = RootFor(path);
      if ((!root || IsThere(*root)) && !IsEndlessPattern(path)) AskSystem(path_);
    }
    if (sight_.presence != Presence::Missing || !root) return;
    if (root->IsOutOfReach(path)) {
      sight_.presence = Presence::OutOfReach;
    } else if (!IsThere(*root)) {
      sight_.presence = Presence::RootMissing;
    }
  }

  void Find(const Folder& folder, TextView name) {
    const FolderSearch::Entry entry = folder.search->Find(name);
    if (entry.result == FolderSearch::Result::Refused) sight_.presence = Presence::OutOfReach;
    if (entry.result != FolderSearch::Result::Found) return;
    sight_.presence = Presence::Found;
    sight_.isFolder = entry.isFolder;
    if (BeginsWithLetter(folder.path)) {
      sight_.longPath.append(folder.path).append(1, u'\\').append(entry.name);
    }
  }

  void AskSystem(const Text& path) {
    WIN32_FIND_DATAW data{};
    const HANDLE search = FindFirstFileW(Wide(PathForSearch(path)), &data);
    if (search == INVALID_HANDLE_VALUE) {
      if (GetLastError() == ERROR_ACCESS_DENIED) sight_.presence = Presence::OutOfReach;
      return;
    }
    FindClose(search);
    sight_.presence = Presence::Found;
    sight_.isFolder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  }

  using Folders = std::unordered_map<Text, Folder, TextHash, TextEqual>;
  using Place = Folders::value_type;  ///< stays where it is

  const Folder& FolderOf(TextView path) {
    // Neighbours in a list often lie in one folder.
    if (!lastPlace_ || !SameText(path, lastPlace_->first)) lastPlace_ = &Walk(path);
    return lastPlace_->second;
  }

  const Place* Known(TextView path) const {
    const auto known = folders_.find(path);
    return known == folders_.end() ? nullptr : &*known;
  }

  const Place& Keep(TextView path, Folder folder) {
    return *folders_.emplace(Text(path), std::move(folder)).first;
  }

  // Goes down to a folder from the deepest one on the way that is known.
  const Place& Walk(TextView path) {
    if (const Place* known = Known(path)) return *known;
    const SearchRoot* const root = RootFor(Text(path) + u'\\');
    if (root && !IsThere(*root)) return Keep(path, {Folder::Kind::Gone, {}, root, nullptr, false});
    const std::size_t rootEnd = root ? EndOfRoot(path) : TextView::npos;
    if (rootEnd == TextView::npos || !HasPlainParts(path, rootEnd)) {
      return Keep(path, {Folder::Kind::Unasked, Text(path), root, nullptr, false});
    }
    const TextView front = path.substr(0, rootEnd);
    const Place* place = Known(front);
    if (!place) place = &Keep(front, {Folder::Kind::Known, Text(front), root, root->Folder()});
    for (std::size_t end = rootEnd; end < path.size();) {
      const Folder& folder = place->second;
      if (folder.kind != Folder::Kind::Known) {
        return Keep(path, {folder.kind, folder.path + Text(path.substr(end)), root});
      }
      const std::size_t begin = end + 1;
      end = std::min(path.find(u'\\', begin), path.size());
      place = Known(path.substr(0, end));
      if (!place)
        place = &Keep(path.substr(0, end), Below(folder, path.substr(begin, end - begin)));
    }
    return *place;
  }

  static Folder Below(const Folder& folder, TextView name) {
    const FolderSearch::Entry entry = folder.search->Find(name);
    const bool isFound = entry.result == FolderSearch::Result::Found;
    const TextView known = isFound ? TextView(entry.name) : name;
    Folder below{Folder::Kind::Gone, folder.path + u'\\' + Text(known), folder.root};
    if (entry.result == FolderSearch::Result::Refused) below.kind = Folder::Kind::Unasked;
    if (isFound && entry.isFolder) {
      below.kind = Folder::Kind::Known;
      below.search = folder.search->Enter();
    }
    return below;
  }

  std::map<Text, std::shared_ptr<SearchRoot>, NameOrder> roots_;
  std::map<Text, std::shared_ptr<SearchRoot>, NameOrder> goneServers_;
  Folders folders_;  ///< by their paths as they were asked for
  const Place* lastPlace_ = nullptr;
  Text path_;  ///< of the last look
  Sight sight_;
};

namespace {

LookupMemory*& Current() {
  static LookupMemory* memory = nullptr;
  return memory;
}

}  // namespace

FileLookups::FileLookups() {
  if (Current()) return;
  own_ = std::make_unique<LookupMemory>();
  Current() = own_.get();
}

FileLookups::~FileLookups() {
  if (own_) Current() = nullptr;
}

const Sight& LookFor(const Text& path) {
  return Current()->Look(path);
}

bool IsRootThere(const Text& path) {
  const SearchRoot* const root = Current()->RootFor(path);
  return root && IsThere(*root);
}

bool IsOnThisMachine(const Text& path) {
  const SearchRoot* const root = Current()->RootFor(path);
  return root && root->IsOfThisMachine();
}

Text RootOf(TextView path) {
  constexpr TextView kVerbatim = u"\\\\?\\";
  constexpr TextView kVerbatimShare = u"\\\\?\\UNC\\";
  constexpr TextView kDevice = u"\\\\.\\";
  if (SameName(path.substr(0, kVerbatimShare.size()), kVerbatimShare)) {
    return ShareOf(path.substr(kVerbatimShare.size()));
  }
  if (path.starts_with(kVerbatim)) {
    path.remove_prefix(kVerbatim.size());
  } else if (!path.starts_with(kDevice) && path.size() > 2 && IsSeparator(path[0]) &&
             IsSeparator(path[1])) {
    return ShareOf(path.substr(2));
  }
  return BeginsWithLetter(path) ? Text(path.substr(0, 2)) + u'\\' : Text();
}

}  // namespace torvane
