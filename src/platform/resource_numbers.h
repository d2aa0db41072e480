// The numbers under which resources/torvane.rc and posix/resources.S put files and texts into the
// program.
#pragma once

namespace torvane::resource {

// Type DATA: whole files.
inline constexpr int kCatalogue = 1;
inline constexpr int kReadme = 2;
inline constexpr int kMissingFileIcon = 105;
inline constexpr int kFindReplaceIcon = 106;
inline constexpr int kHostIcon = 107;
inline constexpr int kCommandIcon = 108;
inline constexpr int kFtpIcon = 109;

// Icons.
inline constexpr int kApplicationIcon = 101;
inline constexpr int kProgramIcon = 104;

// Cursors.
inline constexpr int kHandCursor = 101;

// The string table.
inline constexpr int kVersionTitle = 1;
inline constexpr int kSupportedTitle = 2;
inline constexpr int kMailTitle = 3;
inline constexpr int kMailAddress = 4;
inline constexpr int kHomePageTitle = 5;
inline constexpr int kHomePageAddress = 6;
inline constexpr int kOk = 7;
inline constexpr int kWait = 8;

}  // namespace torvane::resource
