// Nothing goes but what was chosen: the input decides which list stands where, and which command
// runs on it; what is left is read, and the deletion is taken back.
#include <deque>
#include <fstream>
#include <sstream>

#include "../tests/support/generated_lists.h"
#include "../tests/support/recording_toolkit.h"
#include "check.h"
#include "platform/posix/disk/write_back.h"
#include "scratch_prefix.h"
#include "storage/clsRegistry.h"

namespace torvane::fuzz {
namespace {

/// Decisions from the input's bytes, 0 where they are used up.
class InputChoices : public testing::Choices {
 public:
  explicit InputChoices(std::string_view bytes) : bytes_(bytes) {}
  std::uint32_t Below(std::uint32_t limit) override {
    std::uint32_t number = 0;
    for (std::uint32_t most = limit - 1; most > 0; most >>= 8U) {
      number = number << 8U | Next();
    }
    return number % limit;
  }

 private:
  std::uint32_t Next() {
    if (bytes_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }
  std::string_view bytes_;
};

/// A window's list without a window, on a prefix of its own.
class World {
 public:
  World() {
    for (const char* folder : {"windows/system32", "scratch/Folder One"}) {
      std::filesystem::create_directories(prefix_.folder() / "drive_c" / folder);
    }
    std::filesystem::create_directories(prefix_.folder() / "dosdevices");
    std::filesystem::create_symlink("../drive_c", prefix_.folder() / "dosdevices" / "c:");
    for (const char* hive : {"user.reg", "system.reg"}) {
      std::ofstream(prefix_.folder() / hive)
          << "WINE REGISTRY Version 2\n;; All keys relative to \\\\User\\\\S-1-5-21-0-0-0-1000\n\n"
             "#arch=win64\n";
    }
    std::ofstream(prefix_.folder() / "drive_c/scratch/Read Me.TXT") << "x";
    clsRegistry folders;
    folders.ClassKey(kCurrentUser);
    folders.SectionKey(u"Software\\Halvex\\Torvane\\Paths");
    folders.ValueKey(u"Torvane Test");
    folders.ValueType(kTextType);
    folders.Value(Text(u"C:\\windows\\"));
  }

  std::string Run(std::string_view input) {
    InputChoices choices(input);
    std::string wrong = testing::RunGeneratedList(choices, generated_);
    posix::WriteBackChanges();
    return wrong;
  }

 private:
  std::filesystem::path Ini() const {
    return prefix_.folder() / "drive_c/windows/torvane-test.ini";
  }

  ScratchPrefix prefix_;
  testing::RecordingToolkit toolkit_;
  Form form_{BorderStyle::Sizable};
  List list_{form_, u"List"};
  StatusBar status_{form_, u"Status", {0, 80, 80}};
  Tree tree_{form_, u"Tree"};
  UndoStore undo_;
  testing::GeneratedWorld generated_{
      .context = {list_, status_, tree_, undo_},
      .realPaths = {u"C:\\scratch\\Read Me.TXT", u"C:\\scratch\\Folder One"},
      .putIni = [this](const std::string& bytes) { std::ofstream(Ini()) << bytes; },
      .iniBytes =
          [this] {
            posix::WriteBackChanges();
            std::ostringstream bytes;
            bytes << std::ifstream(Ini()).rdbuf();
            return bytes.str();
          },
      .givesBackBytes = true,
      .writeBack = [] { posix::WriteBackChanges(); }};
};

}  // namespace
}  // namespace torvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static torvane::fuzz::World world;
  const std::string wrong = world.Run({reinterpret_cast<const char*>(data), size});
  if (!wrong.empty()) std::fputs((wrong + "\n").c_str(), stderr);
  torvane::fuzz::Check(wrong.empty(), "the list is as it was but for what was chosen");
  return 0;
}
