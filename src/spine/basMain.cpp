#include "spine/basMain.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/extras.h"
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
      {105, u".ico", Icons().IconMissingFile},
      {106, u".ico", Icons().IconFindReplace},
      {107, u".ico", Icons().IconHost},
      {108, u".ico", Icons().IconCommand},
      {109, u".ico", Icons().IconFtp},
      {1, u".dat", CatalogueFile()},
  }};
}

Text TempFolder() {
  std::string buffer(MAX_PATH, '\0');
  GetTempPathA(static_cast<DWORD>(buffer.size()), buffer.data());
  return StripAtNull(FromAnsi(buffer));
}

// The system's name for a new file; the file that comes with it is not wanted.
Text NewTempName(const Text& folder) {
  std::string buffer(MAX_PATH, '\0');
  GetTempFileNameA(ToAnsi(folder).c_str(), "TV", 0, buffer.data());
  DeleteFileA(buffer.c_str());
  return StripAtNull(FromAnsi(buffer));
}

void WriteNewFile(const Text& path, std::span<const std::byte> bytes) {
  const HANDLE file = CreateFileA(ToAnsi(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  const bool whole =
      file != INVALID_HANDLE_VALUE &&
      WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
      written == bytes.size();
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  if (!whole) {
    throw RaisedError(static_cast<std::int32_t>(GetLastError()), ExecutableBaseName(),
                      u"The file '" + path + u"' could not be written.");
  }
}

}  // namespace

void Main() {
  frmSplash splash(BorderStyle::Splash);
  splash.picProgress.Visible(true);
  splash.cmdOk.Visible(false);
  splash.Show();
  splash.Refresh();
  ExtractResources();
  frmMain& mainWindow = MainWindow();
  mainWindow.ReportProgressOn(&splash.picProgress);
  mainWindow.Load();
  mainWindow.ReportProgressOn(nullptr);
  mainWindow.Show();
  splash.Unload();
  mainWindow.Refresh();
}

Text& CatalogueFile() {
  static Text path;
  return path;
}

void ExtractResources() {
  const Text folder = TempFolder();
  for (const ExtractedFile& file : ExtractedFiles()) {
    file.path = NewTempName(folder).append(file.ending);
    WriteNewFile(file.path, DataResource(file.resource));
  }
}

void DeleteIconFiles() {
  const IconPaths& icons = Icons();
  for (const Text* path : {&icons.IconMissingFile, &icons.IconFindReplace, &icons.IconHost,
                           &icons.IconFtp, &icons.IconCommand}) {
    // A file that can't be deleted stays behind; the next start takes new names.
    DeleteFileA(ToAnsi(*path).c_str());
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
  SHFILEINFOA info{};
  return SHGetFileInfoA("C:\\", 0, &info, sizeof info, Flags | SHGFI_SYSICONINDEX);
}

}  // namespace torvane
