// The prefix's world isn't opened for this, since another may be: its hives and INI files are read
// as they stand, and a list counts where the first of its entries is found.
#include "platform/posix/known_lists.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/extras.h"
#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/paths/folder_cache.h"
#include "platform/posix/paths/windows_path.h"
#include "platform/posix/registry/hive_image.h"
#include "platform/posix/text/code_page.h"

namespace torvane::posix {
namespace {

namespace fs = std::filesystem;

constexpr int kCatalogue = 1;

/// The fields of a catalogue row that say where a list lies and what isn't one of its entries.
struct Row {
  std::string name;
  std::string location;
  std::string type;
  std::string section;
  std::string valuePrefix;
  std::string countValue;
};

std::vector<std::string> SplitAt(std::string_view text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    parts.emplace_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\0";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows = [] {
    const auto bytes = DataResource(kCatalogue);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::vector<Row> made;
    for (const std::string& line : SplitAt(text, '\n')) {
      const std::size_t equals = line.find('=');
      if (line.starts_with('[') || equals == line.npos) continue;
      const auto fields = SplitAt(Trimmed(line).substr(equals + 1), ',');
      constexpr std::size_t kFields = 9;
      if (fields.size() == kFields)
        made.push_back({fields[0], fields[1], fields[2], fields[3], fields[4], fields[6]});
    }
    return made;
  }();
  return rows;
}

bool SameName(std::string_view one, std::string_view other) {
  return FoldCase(FromUtf8(one)) == FoldCase(FromUtf8(other));
}

/// A prefix's files, as far as the lists are in them.
class Prefix {
 public:
  explicit Prefix(const fs::path& root)
      : root_(root), user_(read(root / "user.reg"), {}), own_(read(root / "torvane.reg"), {}) {}

  bool hasEntries(const Row& row) {
    // The types from 20 on are of INI files, the first and the last in the Windows folder.
    if (row.type == "20" || row.type == "23") return iniHasEntries(row, u"C:\\windows");
    if (row.type == "21" || row.type == "22")
      return iniHasEntries(row, textOf(own_, u"Software\\Halvex\\Torvane\\Paths", row.name));
    return keyHasEntries(row);
  }

 private:
  static FileContent read(const fs::path& file) {
    try {
      return ReadWholeFile(file);
    } catch (const std::system_error&) {
      return {};
    }
  }

  static std::u16string textOf(HiveImage& hive, std::u16string_view key, const std::string& name) {
    const auto found = hive.find(key);
    const auto value = found ? hive.values(*found).find(FromUtf8(name)) : std::nullopt;
    std::u16string text = value ? UnitsOf(DecodeData(value->data).bytes) : std::u16string();
    while (!text.empty() && text.back() == u'\0') text.pop_back();
    return text;
  }

  bool keyHasEntries(const Row& row) {
    const auto key = user_.find(u"Software\\" + FromUtf8(row.location));
    if (!key) return false;
    const KeyValues& values = user_.values(*key);
    for (std::size_t i = 0; i < values.count(); ++i)
      if (isEntry(row, *values.at(i))) return true;
    return false;
  }

  /// As the reader of the list's type passes values over.
  static bool isEntry(const Row& row, const KeyValue& value) {
    const std::u16string name = value.decodedName();
    if (row.type == "5") return !name.empty();
    if (row.type == "11") return true;
    if (name == FromUtf8(row.countValue)) return false;
    const ValueData data = DecodeData(value.data);
    if (row.type == "3" && data.type != REG_SZ && data.type != REG_EXPAND_SZ) return false;
    return std::ranges::any_of(data.bytes, [](auto byte) { return static_cast<int>(byte) != 0; });
  }

  /// The host's folder of a Windows path of this prefix; empty where it isn't there.
  std::string folderOf(std::u16string_view windowsPath) const {
    const auto path = SplitWindowsPath(windowsPath);
    if (!path || path->drive == 0) return {};
    std::string folder = root_.native() + "/dosdevices/" + static_cast<char>(path->drive) + ":";
    std::error_code ignored;
    if (path->drive == u'c' && !fs::exists(folder, ignored)) folder = root_.native() + "/drive_c";
    for (const std::u16string& part : path->parts) {
      const auto name = FindInFolder(folder, part);
      if (!name) return {};
      folder += "/" + *name;
    }
    return folder;
  }

  bool iniHasEntries(const Row& row, std::u16string_view folder) const {
    const std::string host = folder.empty() ? std::string() : folderOf(folder);
    const auto name = host.empty() ? std::nullopt : FindInFolder(host, FromUtf8(row.location));
    if (!name) return false;
    const FileContent file = read(host + "/" + *name);
    bool isInside = false;
    for (const std::string& line : SplitAt(file.view(), '\n')) {
      const std::string_view text = Trimmed(line);
      const std::size_t equals = text.find('=');
      if (text.starts_with('[')) {
        isInside = SameName(text.substr(1, text.find(']') - 1), row.section);
      } else if (isInside && !text.starts_with(';') && equals != text.npos &&
                 !Trimmed(text.substr(equals + 1)).empty() &&
                 (row.type != "23" ||
                  SameName(text.substr(0, row.valuePrefix.size()), row.valuePrefix))) {
        return true;
      }
    }
    return false;
  }

  fs::path root_;
  HiveImage user_;
  HiveImage own_;
};

}  // namespace

int CountKnownLists(const fs::path& prefix) {
  Prefix files(prefix);
  return static_cast<int>(
      std::ranges::count_if(Rows(), [&](const Row& row) { return files.hasEntries(row); }));
}

}  // namespace torvane::posix
