#include "platform/winapi.h"
#include "support/scratch_world.h"

namespace torvane::testing {

// Under Wine each change takes a time that grows with the key or the section.
const int ScratchWorld::kManyValues = 2'000;
const bool ScratchWorld::kGivesBackBytes = false;
const std::uint32_t ScratchWorld::kManyLists = 2'000;
const char* const ScratchWorld::kUserFolder = "Torvane";

ScratchWorld::ScratchWorld() : hostRoot_("C:\\") {
  folder_ = "C:\\torvane-test-" + std::to_string(GetCurrentProcessId());
  scratch_ = hostRoot_ / folder_.substr(3);
  std::filesystem::create_directories(scratch_);
  // Whose tests these are has lists of their own, perhaps.
  _wputenv_s(L"APPDATA", (scratch_ / "config").c_str());
}

ScratchWorld::~ScratchWorld() {
  for (const std::string& key : keys_) RemoveKey(key);
  // A leftover in the scratch prefix fails no test.
  std::error_code ignored;
  for (const auto& file : windowsFiles_) std::filesystem::remove(file, ignored);
  std::filesystem::remove_all(scratch_, ignored);
}

void ScratchWorld::RemoveKey(const std::string& path) {
  RegDeleteTreeW(HKEY_CURRENT_USER, W(path));
}

// The profile calls keep a file in memory until they are told to let go of it.
void ScratchWorld::WriteBack() {
  WritePrivateProfileStringW(nullptr, nullptr, nullptr, L"C:\\windows\\win.ini");
}

}  // namespace torvane::testing
