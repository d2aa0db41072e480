// Icon numbers are given out in the order in which their descriptions are first asked for; the same
// description always has the same number.
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/extras.h"
#include "platform/posix/paths/host_lookup.h"
#include "platform/posix/paths/windows_path.h"
#include "platform/posix/shell/shell_icons.h"
#include "platform/posix/shell/spawn.h"
#include "platform/posix/text/code_page.h"
#include "platform/posix/text/letter_case.h"
#include "platform/winapi.h"

namespace torvane::posix {
namespace {

using Kind = IconDescription::Kind;

constexpr std::u16string_view kIconExtension = u".ico";

/// All descriptions by number. Number 0 is Unknown.
class IconTable {
 public:
  int numberOf(const IconDescription& description) {
    const auto [known, added] =
        numbers_.try_emplace({description.kind, description.extension, description.file.native()},
                             static_cast<int>(descriptions_.size()));
    if (added) descriptions_.push_back(description);
    return known->second;
  }

  IconDescription describe(int number) const {
    const auto place = static_cast<std::size_t>(number);
    return number >= 0 && place < descriptions_.size() ? descriptions_[place] : IconDescription{};
  }

 private:
  std::vector<IconDescription> descriptions_{IconDescription{}};
  std::map<std::tuple<Kind, std::u16string, std::string>, int> numbers_;
};

IconTable& Icons() {
  static IconTable table;
  return table;
}

/// What SHGetFileInfoW gives as the shell's image list: something that isn't null.
DWORD_PTR ImageList() {
  return reinterpret_cast<DWORD_PTR>(&Icons());
}

/// The extension of a path's last part in lower case, with its point; empty for none.
std::u16string ExtensionOf(std::u16string_view path) {
  const std::u16string_view name = path.substr(path.find_last_of(u"\\/:") + 1);
  const std::size_t point = name.rfind(u'.');
  return point == std::u16string_view::npos ? std::u16string() : FoldCase(name.substr(point));
}

/// What a file shows; one that is its own picture where `host` is where it lies.
IconDescription DescribeFile(std::u16string_view path, const std::optional<std::string>& host) {
  std::u16string extension = ExtensionOf(path);
  if (host && extension == kIconExtension) return {Kind::IconFile, {}, *host};
  return {Kind::FileType, std::move(extension), {}};
}

IconDescription DescribeFolder(std::u16string_view path, UINT flags) {
  const auto parts = SplitWindowsPath(path);
  if (parts && parts->parts.empty() && parts->drive != 0) return {Kind::Drive, {}, {}};
  return {(flags & SHGFI_OPENICON) != 0 ? Kind::OpenFolder : Kind::Folder, {}, {}};
}

/// Where a path leads that isn't a device's; nothing where it isn't there.
std::optional<std::string> HostOf(std::u16string_view path, struct stat& status) {
  const auto parts = SplitWindowsPath(path);
  return parts && !parts->device ? FindWhole(*parts, status) : std::nullopt;
}

/// What a path shows, or nothing where it isn't there.
std::optional<IconDescription> DescribePath(std::u16string_view path, UINT flags) {
  struct stat status {};
  const auto host = HostOf(path, status);
  if (!host) return std::nullopt;
  return S_ISDIR(status.st_mode) ? DescribeFolder(path, flags) : DescribeFile(path, host);
}

/// What a name shows. An .ico file is its own picture, so its name alone still says which one.
IconDescription DescribeName(std::u16string_view name) {
  struct stat status {};
  const bool isPath = name.find_first_of(u"\\/") != std::u16string_view::npos;
  return DescribeFile(name, isPath ? HostOf(name, status) : std::nullopt);
}

/// Whether a text is a link of a kind that the desktop may open for us.
bool IsLink(std::u16string_view link) {
  constexpr std::array<std::u16string_view, 3> kSchemes{u"mailto:", u"http://", u"https://"};
  const std::u16string folded = FoldCase(link);
  const bool plain = std::none_of(folded.begin(), folded.end(),
                                  [](char16_t unit) { return unit <= u' ' || unit == u'"'; });
  return plain && std::any_of(kSchemes.begin(), kSchemes.end(), [&](std::u16string_view scheme) {
           return folded.starts_with(scheme) && folded.size() > scheme.size();
         });
}

HINSTANCE ShellResult(LONG_PTR code) {
  return reinterpret_cast<HINSTANCE>(code);
}

}  // namespace

IconDescription DescribeIcon(int number) {
  return Icons().describe(number);
}

}  // namespace torvane::posix

using namespace torvane::posix;

DWORD_PTR SHGetFileInfoW(LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT /*infoSize*/,
                         UINT flags) {
  std::optional<IconDescription> icon;
  if ((flags & SHGFI_USEFILEATTRIBUTES) == 0) {
    icon = DescribePath(path, flags);
  } else if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    icon = DescribeFolder(path, flags);
  } else {
    icon = DescribeName(path);
  }
  if (!icon) return 0;
  info->iIcon = Icons().numberOf(*icon);
  return ImageList();
}

int torvane::ImageOfIconFile(const std::u16string& /*path*/, int shown) {
  return shown;
}

HINSTANCE ShellExecuteW(HWND /*owner*/, LPCWSTR /*operation*/, LPCWSTR file, LPCWSTR /*parameters*/,
                        LPCWSTR /*folder*/, int /*show*/) {
  constexpr LONG_PTR kNoAssociation = 31;
  constexpr LONG_PTR kStarted = 42;
  if (!IsLink(file)) return ShellResult(kNoAssociation);
  const bool started = StartDetached({"xdg-open", ToUtf8(file)}) == 0;
  return ShellResult(started ? kStarted : ERROR_FILE_NOT_FOUND);
}
