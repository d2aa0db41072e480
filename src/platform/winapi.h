// The one door to Windows: every other file that needs a Windows name includes this header.
//
// On Windows it hands on the SDK's headers. Elsewhere it declares, under the same names and with
// the same types and constants, just the calls that the program makes; platform/posix implements
// them over a Wine prefix. What a call promises is what Microsoft documents for it; the line beside
// it says what the program leans on. Text is in 16-bit units.
#pragma once

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
// COM and its kin make up two thirds of what would be read for each source; who needs them includes
// them.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
// clang-format off
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>
// clang-format on

#else

#include <cstddef>
#include <cstdint>

// ---- Types ----

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using UINT = unsigned int;
using WCHAR = char16_t;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using UINT_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using LPARAM = LONG_PTR;
using WPARAM = UINT_PTR;
using LRESULT = LONG_PTR;
using LSTATUS = LONG;
using REGSAM = DWORD;
using HANDLE = void*;
using HLOCAL = HANDLE;
using HWND = struct HWND__*;
using HKEY = struct HKEY__*;
using HDC = struct HDC__*;
using HINSTANCE = struct HINSTANCE__*;
using HIMAGELIST = struct IMAGELIST__*;

#define CALLBACK
#define WINAPI

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;
constexpr int MAX_PATH = 260;

struct POINT {
  LONG x;
  LONG y;
};
struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};
struct SECURITY_ATTRIBUTES {
  DWORD nLength;
  void* lpSecurityDescriptor;
  BOOL bInheritHandle;
};

// ---- Result codes ----

constexpr LONG ERROR_SUCCESS = 0;
constexpr LONG ERROR_FILE_NOT_FOUND = 2;
constexpr LONG ERROR_PATH_NOT_FOUND = 3;
constexpr LONG ERROR_ACCESS_DENIED = 5;
constexpr LONG ERROR_INVALID_HANDLE = 6;
constexpr LONG ERROR_INVALID_DATA = 13;
constexpr LONG ERROR_NO_MORE_FILES = 18;
constexpr LONG ERROR_SHARING_VIOLATION = 32;
constexpr LONG ERROR_FILE_EXISTS = 80;
constexpr LONG ERROR_INVALID_PARAMETER = 87;
constexpr LONG ERROR_DISK_FULL = 112;
constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
constexpr LONG ERROR_INVALID_NAME = 123;
constexpr LONG ERROR_BAD_PATHNAME = 161;
constexpr LONG ERROR_MORE_DATA = 234;
constexpr LONG ERROR_NO_MORE_ITEMS = 259;
constexpr LONG ERROR_REGISTRY_CORRUPT = 1015;
constexpr LONG ERROR_KEY_DELETED = 1018;
constexpr LONG ERROR_NO_UNICODE_TRANSLATION = 1113;

/// The code of the last failing call of this thread that documents one (files and profile files).
DWORD GetLastError();
void SetLastError(DWORD code);

// ---- Text and code page ----

constexpr UINT CP_ACP = 0;

/// Bytes of the ANSI code page to 16-bit text. `codePage` is CP_ACP, `flags` 0; a size of 0 asks
/// for the number of units. A byte without a meaning in the page gives what Windows gives for it.
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR bytes, int byteCount, LPWSTR text,
                        int textSize);
/// 16-bit text to bytes of the ANSI code page; a character outside it becomes the page's default
/// character ('?'). The last two arguments are null.
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int textCount, LPSTR bytes,
                        int byteSize, LPCSTR defaultChar, BOOL* usedDefaultChar);
/// Lower case in place, unit by unit, where the way back leads to the same unit; gives `count`.
DWORD CharLowerBuffW(LPWSTR text, DWORD count);
constexpr int CSTR_LESS_THAN = 1;
constexpr int CSTR_EQUAL = 2;
constexpr int CSTR_GREATER_THAN = 3;
/// Compares two texts unit by unit, with `ignoreCase` by their capital letters: as the registry and
/// folders compare names. A negative count stands for the length up to the NUL.
int CompareStringOrdinal(LPCWSTR left, int leftCount, LPCWSTR right, int rightCount,
                         BOOL ignoreCase);
/// Replaces %NAME% by the environment's values, unknown names staying as they are; gives the size
/// needed with the closing NUL, also where `size` is too small.
DWORD ExpandEnvironmentStringsW(LPCWSTR text, LPWSTR buffer, DWORD size);

// ---- Registry ----

inline const HKEY HKEY_CURRENT_USER =
    reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(0x80000001)));
inline const HKEY HKEY_LOCAL_MACHINE =
    reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(0x80000002)));

constexpr DWORD REG_NONE = 0;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;
constexpr DWORD REG_DWORD_BIG_ENDIAN = 5;
constexpr DWORD REG_MULTI_SZ = 7;
constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
constexpr DWORD REG_CREATED_NEW_KEY = 1;
constexpr DWORD REG_OPENED_EXISTING_KEY = 2;
constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
constexpr REGSAM KEY_SET_VALUE = 0x0002;
constexpr REGSAM KEY_CREATE_SUB_KEY = 0x0004;
constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x0008;
constexpr REGSAM KEY_NOTIFY = 0x0010;
constexpr REGSAM KEY_CREATE_LINK = 0x0020;

/// Opens an existing key below `root`; names compare without case. With KEY_SET_VALUE among the
/// rights it fails where the key's hive can't be changed now (see
/// platform/posix/registry/registry.cpp).
LSTATUS RegOpenKeyExW(HKEY root, LPCWSTR path, DWORD options, REGSAM rights, HKEY* key);
/// Opens the key, creating it and its parents as needed.
LSTATUS RegCreateKeyExW(HKEY root, LPCWSTR path, DWORD reserved, LPWSTR className, DWORD options,
                        REGSAM rights, const SECURITY_ATTRIBUTES* security, HKEY* key,
                        DWORD* disposition);
LSTATUS RegCloseKey(HKEY key);
/// Type and data of a value, text in 16-bit units; sizes are in bytes. A buffer that is too small
/// gives ERROR_MORE_DATA and the size needed; a text without a NUL gets one where there is room.
LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size);
/// Sets a value. Windows takes a NUL that stands right behind a text for part of it.
LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size);
LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name);
/// The value at a 0-based index, in the order of the hive file, new ones behind. `nameSize` is in
/// units: with the NUL going in, without it coming out.
LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameSize, DWORD* reserved,
                      DWORD* type, BYTE* data, DWORD* dataSize);
/// Counts and longest lengths, in units without the NUL for names, in bytes for data.
LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classSize, DWORD* reserved,
                         DWORD* subKeys, DWORD* longestSubKey, DWORD* longestClass, DWORD* values,
                         DWORD* longestValueName, DWORD* longestValue, DWORD* securitySize,
                         FILETIME* lastWrite);

// ---- Profile files ----

/// The value of a key, or with a null key the section's key names, or with both null the section
/// names, each closed by a NUL; gives the units copied, without the last NUL.
DWORD GetPrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR fallback, LPWSTR buffer,
                               DWORD size, LPCWSTR path);
/// The lines of a section that aren't blank and no comments, as "key=value" with the value's quotes
/// kept, each closed by a NUL; gives the units copied, without the last NUL.
DWORD GetPrivateProfileSectionW(LPCWSTR section, LPWSTR buffer, DWORD size, LPCWSTR path);
/// Makes these the section's lines, "key=value" each, closed by a NUL and the last by two; two of
/// one name are two lines. With null lines removes the section. Comments may go or stay.
BOOL WritePrivateProfileSectionW(LPCWSTR section, LPCWSTR lines, LPCWSTR path);
/// Sets a value; with a null value removes the key, with a null key the whole section. What the
/// file's encoding can't hold is not for this call, nor for the one above: see HarmToProfile.
BOOL WritePrivateProfileStringW(LPCWSTR section, LPCWSTR key, LPCWSTR value, LPCWSTR path);

// ---- Files and folders ----

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x02;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD CREATE_NEW = 1;

struct WIN32_FIND_DATAW {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  WCHAR cFileName[MAX_PATH];
  WCHAR cAlternateFileName[14];
};

/// The first entry that the path names, `*` and `?` in its last part standing for any text and any
/// character; INVALID_HANDLE_VALUE for none. Hidden entries are found, names compare without case.
HANDLE FindFirstFileW(LPCWSTR path, WIN32_FIND_DATAW* data);
BOOL FindClose(HANDLE search);
BOOL DeleteFileW(LPCWSTR path);
/// Makes a new file for writing: `access` is GENERIC_WRITE, `disposition` CREATE_NEW, the rest 0 or
/// null. Fails where anything of that name is there, a link included; the file is its owner's
/// alone.
HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD attributes, HANDLE pattern);
BOOL WriteFile(HANDLE file, const void* bytes, DWORD count, DWORD* written, void* overlapped);
BOOL CloseHandle(HANDLE handle);
/// The temporary folder, closed by a backslash; gives the length without the NUL, or with it the
/// size needed where `size` is too small.
DWORD GetTempPathW(DWORD size, LPWSTR buffer);
/// Makes an empty file of a new name of prefix, hexadecimal digits and ".tmp" (`number` is 0) of
/// less than MAX_PATH units; 0 for none.
UINT GetTempFileNameW(LPCWSTR folder, LPCWSTR prefix, UINT number, LPWSTR name);
/// The folders of the Windows world, without a closing backslash; give what GetTempPathW does.
UINT GetSystemDirectoryW(LPWSTR buffer, UINT size);
UINT GetWindowsDirectoryW(LPWSTR buffer, UINT size);

// ---- Shell ----

constexpr UINT SHGFI_SMALLICON = 0x0001;
constexpr UINT SHGFI_OPENICON = 0x0002;
constexpr UINT SHGFI_USEFILEATTRIBUTES = 0x0010;
constexpr UINT SHGFI_SYSICONINDEX = 0x4000;
constexpr int SW_SHOWNORMAL = 1;

struct SHFILEINFOW {
  HANDLE hIcon;
  int iIcon;
  DWORD dwAttributes;
  WCHAR szDisplayName[MAX_PATH];
  WCHAR szTypeName[80];
};

/// The shell's image list as result and the icon number of a path in `iIcon`; with
/// SHGFI_USEFILEATTRIBUTES only the name is looked at. A path that isn't there gives 0 and leaves
/// the record alone.
DWORD_PTR SHGetFileInfoW(LPCWSTR path, DWORD attributes, SHFILEINFOW* info, UINT infoSize,
                         UINT flags);
/// Opens a mail or web link ("open") with the desktop's program; a result above 32 is success.
HINSTANCE ShellExecuteW(HWND owner, LPCWSTR operation, LPCWSTR file, LPCWSTR parameters,
                        LPCWSTR folder, int show);

struct STARTUPINFOW {
  DWORD cb;
  LPWSTR lpReserved;
  LPWSTR lpDesktop;
  LPWSTR lpTitle;
  DWORD dwX;
  DWORD dwY;
  DWORD dwXSize;
  DWORD dwYSize;
  DWORD dwXCountChars;
  DWORD dwYCountChars;
  DWORD dwFillAttribute;
  DWORD dwFlags;
  WORD wShowWindow;
  WORD cbReserved2;
  BYTE* lpReserved2;
  HANDLE hStdInput;
  HANDLE hStdOutput;
  HANDLE hStdError;
};
struct PROCESS_INFORMATION {
  HANDLE hProcess;
  HANDLE hThread;
  DWORD dwProcessId;
  DWORD dwThreadId;
};

/// Starts a Windows program and doesn't wait for it: the file `program`, or with that null the one
/// that the command line begins with. The rest is 0 or null, and the two handles that come back are
/// null: there is nothing to wait for.
BOOL CreateProcessW(LPCWSTR program, LPWSTR commandLine, SECURITY_ATTRIBUTES* process,
                    SECURITY_ATTRIBUTES* thread, BOOL inherit, DWORD flags, void* environment,
                    LPCWSTR folder, STARTUPINFOW* start, PROCESS_INFORMATION* started);

// ---- Windows, messages, properties ----

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int GWLP_WNDPROC = -4;
constexpr LONG WS_BORDER = 0x00800000;
constexpr LONG WS_EX_CLIENTEDGE = 0x00000200;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_NOTIFY = 0x004E;

struct NMHDR {
  HWND hwndFrom;
  UINT_PTR idFrom;
  UINT code;
};

/// What stands behind the header of a list's NM_RCLICK; ptAction is where the click fell, in the
/// list's client area.
struct NMITEMACTIVATE {
  NMHDR hdr;
  int iItem;
  int iSubItem;
  UINT uNewState;
  UINT uOldState;
  UINT uChanged;
  POINT ptAction;
  LPARAM lParam;
  UINT uKeyFlags;
};

/// A window's procedure (GWLP_WNDPROC) or style bits. Setting gives the value before, 0 for none.
LONG_PTR GetWindowLongPtrW(HWND window, int index);
LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value);
LRESULT CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Runs the window's present procedure; 0 where there is no such window.
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Named slots of a window; names compare without case. GetPropW and RemovePropW give null for an
/// absent one.
HANDLE GetPropW(HWND window, LPCWSTR name);
BOOL SetPropW(HWND window, LPCWSTR name, HANDLE value);
HANDLE RemovePropW(HWND window, LPCWSTR name);

BOOL GetCursorPos(POINT* screenPixels);
BOOL ScreenToClient(HWND window, POINT* point);
BOOL ClientToScreen(HWND window, POINT* point);
/// The inner area in pixels; left and top are 0.
BOOL GetClientRect(HWND window, RECT* rect);
/// Places a child in pixels of its parent's client area.
BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
/// Paints what of the window waits to be painted, now.
BOOL UpdateWindow(HWND window);
BOOL ReleaseCapture();
HWND GetDesktopWindow();

constexpr int SM_CXBORDER = 5;
constexpr int SM_CXFRAME = 32;
constexpr int SM_CXMINTRACK = 34;
int GetSystemMetrics(int index);

constexpr DWORD DSTINVERT = 0x00550009;
/// The whole screen (`window` null) as a surface for PatBlt.
HDC GetDC(HWND window);
int ReleaseDC(HWND window, HDC dc);
/// With DSTINVERT: inverts a rectangle of the screen; a second call restores it.
BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD operation);

constexpr UINT LMEM_ZEROINIT = 0x0040;
HLOCAL LocalAlloc(UINT flags, SIZE_T bytes);
HLOCAL LocalFree(HLOCAL memory);

// ---- Message boxes ----

constexpr UINT MB_OK = 0x00;
constexpr UINT MB_OKCANCEL = 0x01;
constexpr UINT MB_ICONERROR = 0x10;
constexpr UINT MB_ICONEXCLAMATION = 0x30;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;

// ---- The list control ----

constexpr LONG LVS_SHAREIMAGELISTS = 0x0040;
constexpr DWORD LVS_EX_FULLROWSELECT = 0x0020;
constexpr int LVSIL_SMALL = 1;
constexpr UINT LVIF_IMAGE = 0x0002;
constexpr UINT LVHT_ONITEMICON = 0x0002;
constexpr UINT LVHT_ONITEMLABEL = 0x0004;
constexpr UINT LVHT_ONITEMSTATEICON = 0x0008;
constexpr int LVSCW_AUTOSIZE_USEHEADER = -2;
constexpr UINT LVM_SETIMAGELIST = 0x1003;
constexpr UINT LVM_HITTEST = 0x1012;
constexpr UINT LVM_SETCOLUMNWIDTH = 0x101E;
constexpr UINT LVM_GETSELECTEDCOUNT = 0x1032;
constexpr UINT LVM_SETEXTENDEDLISTVIEWSTYLE = 0x1036;
constexpr UINT LVM_SETITEMW = 0x104C;
constexpr UINT NM_RCLICK = static_cast<UINT>(-5);

struct LVITEMW {
  UINT mask;
  int iItem;
  int iSubItem;
  UINT state;
  UINT stateMask;
  LPWSTR pszText;
  int cchTextMax;
  int iImage;
  LPARAM lParam;
};
struct LVHITTESTINFO {
  POINT pt;
  UINT flags;
  int iItem;
  int iSubItem;
};

#endif

#include <string>

namespace torvane {

/// Text on its way through the door, whose calls take 16-bit text as WCHAR: of the program's own
/// text, and of a buffer for a call to fill.
inline const WCHAR* Wide(const char16_t* text) {
  return reinterpret_cast<const WCHAR*>(text);
}
inline const WCHAR* Wide(const std::u16string& text) {
  return Wide(text.c_str());
}
inline WCHAR* WideBuffer(std::u16string& buffer) {
  return reinterpret_cast<WCHAR*>(buffer.data());
}
/// And the way back, of a text with its closing NUL.
inline const char16_t* TextOf(const WCHAR* text) {
  return reinterpret_cast<const char16_t*>(text);
}

/// The text that a call gives, however long it is. `call` fills a buffer of a size in units; it
/// gives the text's length without the NUL, or the size needed where the buffer is too small.
template <typename Call>
std::u16string TextOfCall(Call call) {
  std::u16string buffer(MAX_PATH, u'\0');
  for (;;) {
    const std::size_t length = call(WideBuffer(buffer), static_cast<DWORD>(buffer.size()));
    const bool fits = length < buffer.size();
    buffer.resize(length);
    if (fits) return buffer;
  }
}

}  // namespace torvane
