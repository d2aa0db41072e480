// Each look is one search by name: Windows reads no folder for it.
#include "platform/folder_search.h"

#include "platform/extras.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

class SearchedFolder : public FolderSearch {
 public:
  explicit SearchedFolder(std::u16string front) : front_(std::move(front)) {}

  Entry Find(std::u16string_view name) override {
    WIN32_FIND_DATAW data{};
    const HANDLE search = FindFirstFileW(Wide(PathForSearch(front_ + std::u16string(name))), &data);
    if (search == INVALID_HANDLE_VALUE) {
      return {GetLastError() == ERROR_ACCESS_DENIED ? Result::Refused : Result::Missing};
    }
    FindClose(search);
    found_ = TextOf(data.cFileName);
    return {Result::Found, found_, (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0};
  }

  std::unique_ptr<FolderSearch> Enter() const override {
    return std::make_unique<SearchedFolder>(front_ + found_ + u'\\');
  }

 private:
  std::u16string front_;  ///< the folder's path with a closing backslash
  std::u16string found_;
};

class Root : public SearchRoot {
 public:
  explicit Root(const std::u16string& root) : root_(root) {
    const bool isName = root.size() < MAX_PATH;
    if (isName && GetFileAttributesW(Wide(root)) != INVALID_FILE_ATTRIBUTES) return;
    const DWORD error = isName ? GetLastError() : ERROR_INVALID_NAME;
    if (error == ERROR_ACCESS_DENIED) return;
    // Another share of the server may be there where only the name of this one isn't.
    const bool isDrive = root.size() == 3;
    state_ = isDrive || error == ERROR_BAD_NET_NAME ? State::Gone : State::ServerGone;
  }

  State state() const override { return state_; }
  std::unique_ptr<FolderSearch> Folder() const override {
    return std::make_unique<SearchedFolder>(root_);
  }
  bool IsOutOfReach(std::u16string_view /*path*/) const override { return false; }
  bool IsOfThisMachine() const override {
    const UINT type = GetDriveTypeW(Wide(root_));
    return type == DRIVE_FIXED || type == DRIVE_REMOVABLE || type == DRIVE_RAMDISK;
  }

 private:
  std::u16string root_;
  State state_ = State::There;
};

}  // namespace

std::unique_ptr<SearchRoot> LookAtRoot(const std::u16string& root) {
  return std::make_unique<Root>(root);
}

}  // namespace torvane
