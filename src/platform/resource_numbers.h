/* The numbers under which resources/torvane.rc and posix/resources.S put files and texts into the
   program. The resource compiler and the assembler read the upper half. */
#pragma once

/* Type DATA: whole files. */
#define TORVANE_CATALOGUE 1
#define TORVANE_README 2
#define TORVANE_MISSING_FILE_ICON 105
#define TORVANE_FIND_REPLACE_ICON 106
#define TORVANE_HOST_ICON 107
#define TORVANE_COMMAND_ICON 108
#define TORVANE_FTP_ICON 109

/* Icons. */
#define TORVANE_APPLICATION_ICON 101
#define TORVANE_PROGRAM_ICON 104

/* Cursors. */
#define TORVANE_HAND_CURSOR 101

/* The string table, whose texts are in product.h. */
#define TORVANE_VERSION_TITLE 1
#define TORVANE_SUPPORTED_TITLE 2
#define TORVANE_MAIL_TITLE 3
#define TORVANE_MAIL_ADDRESS 4
#define TORVANE_HOME_PAGE_TITLE 5
#define TORVANE_HOME_PAGE_ADDRESS 6
#define TORVANE_OK 7
#define TORVANE_WAIT 8

#if !defined(RC_INVOKED) && !defined(__ASSEMBLER__)

namespace torvane::resource {

inline constexpr int kCatalogue = TORVANE_CATALOGUE;
inline constexpr int kReadme = TORVANE_README;
inline constexpr int kMissingFileIcon = TORVANE_MISSING_FILE_ICON;
inline constexpr int kFindReplaceIcon = TORVANE_FIND_REPLACE_ICON;
inline constexpr int kHostIcon = TORVANE_HOST_ICON;
inline constexpr int kCommandIcon = TORVANE_COMMAND_ICON;
inline constexpr int kFtpIcon = TORVANE_FTP_ICON;

inline constexpr int kApplicationIcon = TORVANE_APPLICATION_ICON;
inline constexpr int kProgramIcon = TORVANE_PROGRAM_ICON;

inline constexpr int kHandCursor = TORVANE_HAND_CURSOR;

inline constexpr int kVersionTitle = TORVANE_VERSION_TITLE;
inline constexpr int kSupportedTitle = TORVANE_SUPPORTED_TITLE;
inline constexpr int kMailTitle = TORVANE_MAIL_TITLE;
inline constexpr int kMailAddress = TORVANE_MAIL_ADDRESS;
inline constexpr int kHomePageTitle = TORVANE_HOME_PAGE_TITLE;
inline constexpr int kHomePageAddress = TORVANE_HOME_PAGE_ADDRESS;
inline constexpr int kOk = TORVANE_OK;
inline constexpr int kWait = TORVANE_WAIT;

}  // namespace torvane::resource

#endif
