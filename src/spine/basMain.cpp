#include "spine/basMain.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/extras.h"
#include "platform/resource_numbers.h"
#include "platform/winapi.h"
#include "spine/frmMain.h"
#include "storage/raised_error.h"
#include "windows/frmSplash.h"

namespace torvane {
namespace {

// A resource that start-up turns into a file.
struct ExtractedFile {
  int resource;
  TextView ending;
  Text& path;
};

std::array<ExtractedFile, 6> ExtractedFiles() {
  return {{
      {resource::kMissingFileIcon, u".ico", Icons().IconMissingFile},
      {resource::kFindReplaceIcon, u".ico", Icons().IconFindReplace},
      {resource::kHostIcon, u".ico", Icons().IconHost},
      {resource::kCommandIcon, u".ico", Icons().IconCommand},
      {resource::kFtpIcon, u".ico", Icons().IconFtp},
      {resource::kCatalogue, u".dat", CatalogueFile()},
  }};
}

Text TempFolder() {
  return TextOfCall([](WCHAR* buffer, DWORD size) { return GetTempPathW(size, buffer); });
}

[[noreturn]] void RaiseUnusable(const Text& folder, DWORD error) {
  throw RaisedError(
      static_cast<std::int32_t>(error), ExecutableBaseName(),
      u"The temporary folder '" + folder + u"' can't be used (error " + Decimal(error) + u").");
}

// The system's name for a new file; the file that comes with it is not wanted.
Text NewTempName(const Text& folder) {
  Text name(MAX_PATH, u'\0');
  if (GetTempFileNameW(Wide(folder), Wide(u"TV"), 0, WideBuffer(name)) == 0) {
    RaiseUnusable(folder, GetLastError());
  }
  name = StripAtNull(name);
  DeleteFileW(Wide(name));
  return name;
}

// Gives ERROR_SUCCESS, or why there is no such new file with these bytes.
DWORD WriteNewFile(const Text& path, std::span<const std::byte> bytes) {
  const HANDLE file = CreateFileW(Wide(path), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return GetLastError();
  DWORD written = 0;
  const BOOL done =
      WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  const DWORD error = done != FALSE ? ERROR_DISK_FULL : GetLastError();
  CloseHandle(file);
  if (done != FALSE && written == bytes.size()) return ERROR_SUCCESS;
  DeleteFileW(Wide(path));
  return error;
}

// The system's name is free, but the one with the ending may be taken: then it gives another.
void Extract(const ExtractedFile& file, const Text& folder) {
  constexpr int kAttempts = 100;
  DWORD error = ERROR_FILE_EXISTS;
  for (int attempt = 0; attempt < kAttempts && error == ERROR_FILE_EXISTS; ++attempt) {
    const Text path = NewTempName(folder).append(file.ending);
    error = WriteNewFile(path, DataResource(file.resource));
    if (error == ERROR_SUCCESS) file.path = path;
  }
  if (error != ERROR_SUCCESS) RaiseUnusable(folder, error);
}

// A file that can't be deleted stays behind; the next start takes new names.
void DeleteExtractedFiles() {
  for (const ExtractedFile& file : ExtractedFiles()) DeleteFileW(Wide(file.path));
}

// Takes the files away again where the start fails before this is told that it is done.
class ExtractionGuard {
 public:
  ExtractionGuard() = default;
  ExtractionGuard(const ExtractionGuard&) = delete;
  ExtractionGuard& operator=(const ExtractionGuard&) = delete;
  ~ExtractionGuard() {
    if (!done_) DeleteExtractedFiles();
  }
  void done() { done_ = true; }

 private:
  bool done_ = false;
};

}  // namespace

void Main() {
  frmSplash splash(BorderStyle::Splash);
  splash.picProgress.Visible(true);
  splash.cmdOk.Visible(false);
  splash.Show();
  splash.Refresh();
  ExtractionGuard guard;
  ExtractResources();
  frmMain& mainWindow =
      MakeMainWindow([&splash](std::int32_t count, std::int32_t number, const Text& category) {
        ShowProgress(splash.picProgress, count, number, u"Loading MRU Data (" + category + u")");
      });
  mainWindow.Load();
  mainWindow.Show();
  splash.Unload();
  mainWindow.Refresh();
  guard.done();
  mainWindow.LookForLists();
  mainWindow.FindLists();
  mainWindow.TellLeftOutRows();
}

Text& CatalogueFile() {
  static Text path;
  return path;
}

void ExtractResources() {
  const Text folder = TempFolder();
  for (const ExtractedFile& file : ExtractedFiles()) file.path.clear();
  ExtractionGuard guard;
  for (const ExtractedFile& file : ExtractedFiles()) Extract(file, folder);
  guard.done();
}

void DeleteIconFiles() {
  const IconPaths& icons = Icons();
  for (const Text* path : {&icons.IconMissingFile, &icons.IconFindReplace, &icons.IconHost,
                           &icons.IconFtp, &icons.IconCommand}) {
    DeleteFileW(Wide(*path));
  }
}

void ShowProgress(PictureBox& Picture, std::int32_t MaxValue, std::int32_t Value,
                  const Text& Caption) {
  if (Value > MaxValue) return;
  Value = std::min(Value, static_cast<std::int32_t>(std::lround(Picture.ScaleWidth())));
  Picture.Cls();
  Picture.ScaleWidth(static_cast<float>(MaxValue));
  Picture.CurrentX = 2;
  const auto margin = std::lround(Picture.ScaleHeight() - Picture.TextHeight(Caption)) / 2;
  Picture.CurrentY = static_cast<float>(margin);
  Picture.Print(Caption);
  Picture.FillBox(0, 0, static_cast<float>(Value), Picture.ScaleHeight());
  Picture.Refresh();
}

DWORD_PTR GetSystemImageList(UINT Flags) {
  SHFILEINFOW info{};
  return SHGetFileInfoW(Wide(u"C:\\"), 0, &info, sizeof info, Flags | SHGFI_SYSICONINDEX);
}

}  // namespace torvane
