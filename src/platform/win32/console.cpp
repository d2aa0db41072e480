#include "platform/console.h"
#include "platform/winapi.h"

namespace torvane {
namespace {

std::string ToUtf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
  bytes.resize(bytes.empty() ? 0 : bytes.size() - 1);
  return bytes;
}

std::wstring FromUtf8(const std::string& bytes) {
  const auto size = static_cast<int>(bytes.size());
  std::wstring text(bytes.size(), L'\0');
  text.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), size)));
  return text;
}

std::string ReasonOf(DWORD code) {
  wchar_t* text = nullptr;
  FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::string reason = text ? ToUtf8(text) : "error " + std::to_string(code);
  LocalFree(text);
  while (!reason.empty() && reason.back() <= ' ') reason.pop_back();
  return reason;
}

bool WriteAll(HANDLE file, std::string_view bytes) {
  DWORD written = 0;
  return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
         written == bytes.size() && FlushFileBuffers(file) != 0;
}

class MutexTurn : public Turn {
 public:
  explicit MutexTurn(HANDLE mutex) : mutex_(mutex) {}
  MutexTurn(const MutexTurn&) = delete;
  MutexTurn& operator=(const MutexTurn&) = delete;
  ~MutexTurn() override {
    ReleaseMutex(mutex_);
    CloseHandle(mutex_);
  }

 private:
  HANDLE mutex_;
};

}  // namespace

std::vector<std::string> ConsoleArguments(int /*count*/, char** /*arguments*/) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int n = 1; n < count; ++n) arguments.push_back(ToUtf8(wide[n]));
  LocalFree(wide);
  return arguments;
}

bool IsTerminal(Stream stream) {
  DWORD mode = 0;
  return GetConsoleMode(
             GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE),
             &mode) != 0;
}

void PrepareConsole() {
  constexpr DWORD kUnderstandsColours = 0x0004;
  for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    const HANDLE console = GetStdHandle(stream);
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) == 0) continue;
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleMode(console, mode | kUnderstandsColours);
  }
}

bool WriteOutput(std::string_view bytes) {
  // A console takes no more than some ten thousand at once.
  constexpr std::size_t kAtOnce = 8192;
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kAtOnce);
    DWORD written = 0;
    if (WriteFile(output, part.data(), static_cast<DWORD>(part.size()), &written, nullptr) == 0) {
      return GetLastError() == ERROR_BROKEN_PIPE || GetLastError() == ERROR_NO_DATA;
    }
    bytes.remove_prefix(written);
  }
  return true;
}

std::string WriteNewFile(const std::string& path, std::string_view bytes) {
  const std::wstring target = FromUtf8(path);
  const std::wstring temporary = target + L".part-" + std::to_wstring(GetCurrentProcessId());
  const HANDLE file = CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return ReasonOf(GetLastError());
  bool isDone = WriteAll(file, bytes);
  DWORD error = GetLastError();
  CloseHandle(file);
  // Without the flag that would replace a file of that name.
  if (isDone && MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) == 0) {
    error = GetLastError();
    isDone = false;
  }
  if (isDone) return {};
  DeleteFileW(temporary.c_str());
  return ReasonOf(error);
}

// A Windows user has one registry.
std::vector<FoundWorld> FoundWorlds() {
  return {};
}

OpenedWorld OpenWorld(const std::string& named) {
  if (named.empty()) return {};
  return {"--prefix is for Wine prefixes; on Windows there is one registry, leave it out.", {}};
}

bool IsWorldInUse() {
  return false;
}

std::string WhyRefused() {
  return {};
}

// The registry and the profile calls write at once.
std::vector<CommitFailure> CommitChanges() {
  return {};
}

std::unique_ptr<Turn> WaitForTurn() {
  constexpr DWORD kMinute = 60'000;
  const HANDLE mutex = CreateMutexW(nullptr, FALSE, L"Local\\Torvane command line");
  if (!mutex) return nullptr;
  const DWORD outcome = WaitForSingleObject(mutex, kMinute);
  if (outcome == WAIT_OBJECT_0 || outcome == WAIT_ABANDONED) {
    return std::make_unique<MutexTurn>(mutex);
  }
  CloseHandle(mutex);
  return nullptr;
}

}  // namespace torvane
