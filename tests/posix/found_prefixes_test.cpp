// A home with a prefix of every program that keeps some: each is found once, under its name.
#include "platform/posix/prefix/found_prefixes.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <thread>

#include "platform/posix/disk/forget.h"
#include "platform/posix/known_lists.h"
#include "platform/posix/prefix/settings_text.h"
#include "platform/posix/prefix/wine_server.h"
#include "posix/hive_world.h"
#include "support/posix/other_process.h"

namespace torvane::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class FoundPrefixesTest : public HiveWorld {
 protected:
  FoundPrefixesTest() : home_(Prefix() / "home"), outerHome_(Variable("HOME")) {
    fs::create_directories(home_);
    setenv("HOME", home_.c_str(), 1);
    outerPrefix_ = Variable("WINEPREFIX");
    unsetenv("WINEPREFIX");
  }
  ~FoundPrefixesTest() override {
    setenv("HOME", outerHome_.c_str(), 1);
    setenv("WINEPREFIX", outerPrefix_.c_str(), 1);
  }

  /// Makes a prefix below the home; gives its folder.
  fs::path Make(const fs::path& folder) const {
    fs::create_directories(home_ / folder / "drive_c/windows");
    return home_ / folder;
  }
  void Put(const fs::path& file, const std::string& text) const {
    fs::create_directories((home_ / file).parent_path());
    Write(home_ / file, text);
  }
  /// "manager: name" of every prefix, its folder below the home behind it where `withPlace`.
  std::multiset<std::string> Found() const {
    std::multiset<std::string> found;
    for (const auto& prefix : posix::FindPrefixes())
      found.insert(prefix.manager + ": " + prefix.name + " at " +
                   prefix.root.lexically_relative(fs::canonical(home_)).string());
    return found;
  }
  static void MakeGames(const fs::path& file, const std::string& rows) {
    fs::create_directories(file.parent_path());
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    const std::string orders =
        "CREATE TABLE games (id INTEGER PRIMARY KEY, name TEXT, slug TEXT, configpath TEXT);" +
        rows;
    EXPECT_EQ(sqlite3_exec(database, orders.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
  }

  void MakeNative() {
    Make(".wine");
    Make(".local/share/wineprefixes/tides");
    Make(".local/share/bottles/bottles/Office-1");
    Put(".local/share/bottles/bottles/Office-1/bottle.yml",
        "Arch: win64\nName: 'Office'\nX: [1]\n");
    Put(".local/share/bottles/data.yml", "custom_bottles_path: " + (home_ / "Big disk").string());
    Make("Big disk/cad");
    Put("Big disk/cad/bottle.yml", "Name: \"Caf\\u00E9 CAD\"\n");
    Make("elsewhere/noted");
    Put("Big disk/noted/placeholder.yml", "Path: " + (home_ / "elsewhere/noted").string());
    Put("elsewhere/noted/bottle.yml", "Name: Noted\n");
    Make("Games/boats");
    Put(".config/lutris/games/boats-1699000001.yml",
        "game:\n  exe: x.exe\n  prefix: " + (home_ / "Games/boats").string() + "\nsystem: {}\n");
    Make("Games/tides");
    Put(".local/share/lutris/games/tide-table-1699000002.yml", "game: {prefix: ~/Games/tides}\n");
    MakeGames(home_ / ".local/share/lutris/pga.db",
              "INSERT INTO games VALUES (1, 'Boats & Buoys', 'boats', 'boats-1699000001')");
    Make("Games/Heroic/Prefixes/Harbour");
    Make("elsewhere/heroic/pfx");
    Put(".config/heroic/GamesConfig/Ab12.json",
        R"({"Ab12": {"wineVersion": {"type": "proton"}, "winePrefix": ")" +
            (home_ / "elsewhere/heroic").string() + R"("}, "version": "v0"})");
    Put(".config/heroic/store_cache/legendary_library.json",
        R"({"library": [{"title": "Other", "app_name": "x"},
                        {"app_name": "Ab12", "extra": [{}], "title": "Lighthouse"}]})");
  }
  void MakeNativeGames() {
    Make(".local/share/Steam/steamapps/compatdata/4711/pfx");
    Put(".local/share/Steam/steamapps/appmanifest_4711.acf",
        "\"AppState\"\n{\n\t\"appid\"\t\"4711\"\n\t\"name\"\t\"Sea \\\"Dogs\\\"\" // x\n}\n");
    Make("disk/Lib/steamapps/compatdata/815/pfx");
    Put(".local/share/Steam/steamapps/libraryfolders.vdf",
        "\"libraryfolders\"\n{\n\"0\"\n{\n\"path\" \"" + (home_ / "disk/Lib").string() +
            "\"\n\"apps\" { \"815\" \"1\" }\n}\n}\n");
    fs::create_directories(home_ / ".steam");
    fs::create_directory_symlink(home_ / ".local/share/Steam", home_ / ".steam/steam");
    Make("Games/umu/umu-default");
    fs::create_directory_symlink(".", home_ / "Games/umu/umu-default/pfx");
    Make(".PlayOnLinux/wineprefix/Ledger");
    Make(".cxoffice/Accounts");
  }
  void MakeSandboxed() {
    Make(".var/app/com.usebottles.bottles/data/bottles/bottles/Paint");
    Make(".var/app/net.lutris.Lutris/data/inner");
    Put(".var/app/net.lutris.Lutris/config/lutris/games/inner-1.yml",
        "game:\n  prefix: /var/data/inner\nname: Inner\n");
    Make(".var/app/com.valvesoftware.Steam/.local/share/Steam/steamapps/compatdata/12/pfx");
    Make("snap/steam/common/.local/share/Steam/steamapps/compatdata/13/pfx");
  }

  fs::path home_;
  std::string outerHome_;
  std::string outerPrefix_;
};

TEST_F(FoundPrefixesTest, EachProgramsAreFoundUnderTheirNames) {
  MakeNative();
  MakeNativeGames();
  MakeSandboxed();
  // Links to what is there already.
  fs::create_directory_symlink(home_ / ".wine", home_ / ".local/share/wineprefixes/again");
  EXPECT_EQ(Found(),
            (std::multiset<std::string>{
                "Wine: .wine at .wine",
                "Wine: tides at .local/share/wineprefixes/tides",
                "Bottles: Office at .local/share/bottles/bottles/Office-1",
                "Bottles: Caf\u00E9 CAD at Big disk/cad",
                "Bottles: Noted at elsewhere/noted",
                "Bottles: Paint at .var/app/com.usebottles.bottles/data/bottles/bottles/Paint",
                "Lutris: Boats & Buoys at Games/boats",
                "Lutris: tide-table at Games/tides",
                "Lutris: Inner at .var/app/net.lutris.Lutris/data/inner",
                "Heroic: Harbour at Games/Heroic/Prefixes/Harbour",
                "Heroic: Lighthouse at elsewhere/heroic/pfx",
                "Steam: Sea \"Dogs\" at .local/share/Steam/steamapps/compatdata/4711/pfx",
                "Steam: 815 at disk/Lib/steamapps/compatdata/815/pfx",
                "Steam: 12 at "
                ".var/app/com.valvesoftware.Steam/.local/share/Steam/steamapps/compatdata/12/pfx",
                "Steam: 13 at snap/steam/common/.local/share/Steam/steamapps/compatdata/13/pfx",
                "umu: umu-default at Games/umu/umu-default",
                "PlayOnLinux: Ledger at .PlayOnLinux/wineprefix/Ledger",
                "CrossOver: Accounts at .cxoffice/Accounts",
            }));
}

// As the managers' sandboxes have it: the prefix under another path, and a /tmp of its own.
TEST_F(FoundPrefixesTest, EachIsRefusedWhileAWineserverRunsInASandbox) {
  MakeNative();
  MakeNativeGames();
  MakeSandboxed();
  if (!OtherProcess([&] { return EnterSandbox(home_); }).stands) {
    std::puts("the kernel forbids a mount namespace: not tried");
    return;
  }
  for (const auto& prefix : posix::FindPrefixes()) {
    SCOPED_TRACE(prefix.root);
    Write(prefix.root / "user.reg", kHeader + "\n[K] 1\n\"a\"=\"1\"\n");
    setenv("WINEPREFIX", prefix.root.c_str(), 1);
    posix::ForgetWorld();
    {
      const fs::path inside = "/mnt" / prefix.root.lexically_relative(fs::canonical(home_));
      const OtherProcess server(
          [&] {
            setenv("WINEPREFIX", inside.c_str(), 1);
            unsetenv("TMPDIR");
            return EnterSandbox(home_);
          },
          {"wineserver", "-f", "-p60"});
      EXPECT_TRUE(server.stands);
      const auto deadline = std::chrono::steady_clock::now() + 30s;
      while (!posix::WineServerRuns(prefix.root) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(10ms);
      EXPECT_EQ(Set("K", "a", "2"), ERROR_SHARING_VIOLATION);
      EXPECT_NE(Read(prefix.root / "user.reg").find("\"a\"=\"1\""), std::string::npos);
    }
    EXPECT_EQ(Set("K", "a", "2"), ERROR_SUCCESS);
    Save();
  }
  unsetenv("WINEPREFIX");
}

TEST_F(FoundPrefixesTest, AHostileFileCostsItsOwnPrefixTheNameAndNothingElse) {
  const std::string bottles = ".local/share/bottles/bottles/";
  const auto repeated = [](const char* text, int count) {
    std::string all;
    while (count-- > 0) all += text;
    return all;
  };
  const struct {
    const char* folder;
    std::string file;
    const char* shown;
  } cases[] = {
      {"controls", "Name: \"a\\x1b[31m\\nb\\u202Ec\\0\"\n", "a[31mbc"},
      {"blank", "Name: \"\\x01 \"\n", "blank"},
      {"long", "Name: " + std::string(5000, 'x'), nullptr},
      {"bytes", "\xFF\xFE\x01", "bytes"},
      {"deep", repeated("[", 100'000), "deep"},
      {"steps", "a:\n" + repeated("- ", 50'000) + "\nName: x", "steps"},
      {"unfolded",
       "a: &a [x,x,x,x,x,x,x,x]\nb: &b [*a,*a,*a,*a,*a,*a]\nc: &c [*b,*b,*b,*b,*b]\nName: Bomb\n",
       "Bomb"},
      {"alias", "Name: *nobody\n", "alias"},
      {"list", "Name: [a, b]\n", "list"},
      {"broken", "Name: Kept\nX: [", "Kept"},
  };
  std::multiset<std::string> expected;
  for (const auto& [folder, file, shown] : cases) {
    Make(bottles + folder);
    Put(bottles + folder + "/bottle.yml", file);
    const std::string name = shown != nullptr ? shown : std::string(120, 'x');
    expected.insert("Bottles: " + name + " at " + bottles + folder);
  }
  // A gigabyte that takes no room, a pipe that nobody writes to, a link to itself, a folder.
  for (const char* folder : {"huge", "pipe", "loop", "folder"}) {
    const fs::path file = Make(bottles + folder) / "bottle.yml";
    expected.insert(std::string("Bottles: ") + folder + " at " + bottles + folder);
    if (folder == "huge"s) {
      Write(file, "Name: Huge\n");
      fs::resize_file(file, std::uintmax_t{1} << 30);
    } else if (folder == "pipe"s) {
      mkfifo(file.c_str(), 0600);
    } else if (folder == "loop"s) {
      fs::create_symlink(file, file);
    } else {
      fs::create_directories(file);
    }
  }
  // Places that are none: a loop, a link out, a file, a prefix that has lost its drive.
  fs::create_directory_symlink("self", home_ / bottles / "self");
  fs::create_directory_symlink(Make("outside"), home_ / bottles / "out");
  Put(bottles + "file", "");
  fs::create_directories(home_ / bottles / "empty");
  fs::create_directories(home_ / ".local/share/Steam/steamapps/compatdata/1");
  fs::create_directory_symlink(home_ / "outside",
                               home_ / ".local/share/Steam/steamapps/compatdata/1/pfx");
  Put(".local/share/Steam/steamapps/libraryfolders.vdf", "\"a\" { } } \"b\" \"/\x01\" { { { \"");
  Put(".config/lutris/games/relative.yml", "game: {prefix: ../outside}");
  Put(".config/heroic/GamesConfig/x.json", "{\"x\": {\"winePrefix\": [[[[");
  MakeGames(home_ / ".local/share/lutris/pga.db",
            "DROP TABLE games; CREATE VIEW games AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
            "SELECT i + 1 FROM n) SELECT i AS configpath, i AS name FROM n WHERE i < 0;");
  EXPECT_EQ(Found(), expected);
}

TEST_F(FoundPrefixesTest, TheListsWithEntriesAreCounted) {
  const fs::path root = Make("counted");
  EXPECT_EQ(posix::CountKnownLists(root), 0);
  Write(root / "user.reg",
        kHeader +
            "\n[Software\\\\winrar\\\\ArcHistory] 1\n\"0\"=\"C:\\\\a.rar\"\n"
            "\n[Software\\\\Nico Mak Computing\\\\WinZip\\\\filemenu] 1\n\"filemenu1\"=\"\"\n"
            "\n[Software\\\\Nico Mak Computing\\\\WinZip\\\\extract] 1\n\"n\"=dword:00000002\n"
            "\n[Software\\\\Bradbury\\\\TopStyle\\\\1.5\\\\RecentFiles] 1\n\"C:\\\\a.css\"=\"\"\n");
  Write(root / "drive_c/windows/WIN.INI", "[ramo's winvi]\r\nFont=x\r\nRecentFile0 = a\r\n");
  EXPECT_EQ(posix::CountKnownLists(root), 3);
}

TEST_F(FoundPrefixesTest, AFolderThatHoldsAPrefixIsUnderstood) {
  const fs::path proton = Make("compat/pfx").parent_path();
  EXPECT_EQ(posix::PrefixIn(proton), fs::canonical(proton / "pfx"));
  EXPECT_EQ(posix::PrefixIn(proton / "pfx"), fs::canonical(proton / "pfx"));
  fs::create_directory_symlink(proton, home_ / "link");
  EXPECT_EQ(posix::PrefixIn(home_ / "link"), fs::canonical(proton / "pfx"));
  EXPECT_EQ(posix::PrefixIn(home_), std::nullopt);
  EXPECT_EQ(posix::PrefixIn(proton / "pfx/drive_c"), std::nullopt);
}

}  // namespace
}  // namespace torvane::testing
