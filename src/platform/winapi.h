// The one door to Windows: every other file that needs a Windows name includes this header.
//
// On Windows it hands on the SDK's headers. Elsewhere it declares, under the same names and with
// the same types and constants, just the calls that the program makes; platform/posix implements
// them over a Wine prefix. What a call promises is what Microsoft documents for it; the line beside
// it says what the program leans on. Text in the A calls is in the ANSI code page.
#pragma once

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
// clang-format off
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>
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
/// Lower case in place, by Unicode rules, unit by unit; gives `count`.
DWORD CharLowerBuffW(LPWSTR text, DWORD count);
/// Replaces %NAME% by the environment's values, unknown names staying as they are; gives the size
/// needed with the closing NUL, also where `size` is too small.
DWORD ExpandEnvironmentStringsA(LPCSTR text, LPSTR buffer, DWORD size);

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
/// rights it fails where the key's hive can't be changed now (see platform/posix/registry.cpp).
LSTATUS RegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, REGSAM rights, HKEY* key);
/// Opens the key, creating it and its parents as needed.
LSTATUS RegCreateKeyExA(HKEY root, LPCSTR path, DWORD reserved, LPSTR className, DWORD options,
                        REGSAM rights, const SECURITY_ATTRIBUTES* security, HKEY* key,
                        DWORD* disposition);
LSTATUS RegCloseKey(HKEY key);
/// Type and data of a value, in bytes of the code page for the text types. A buffer that is too
/// small gives ERROR_MORE_DATA and the size needed.
LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size);
LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size);
/// The same two without the code page: text is in 16-bit units as it is stored, sizes in bytes.
LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size);
LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size);
LSTATUS RegDeleteValueA(HKEY key, LPCSTR name);
/// The name at a 0-based index, in the order of the hive file, new values behind. `nameSize` is in
/// characters: with the NUL going in, without it coming out.
LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, DWORD* nameSize, DWORD* reserved,
                      DWORD* type, BYTE* data, DWORD* dataSize);
/// Counts and longest lengths, in characters without the NUL for names, in bytes for data.
LSTATUS RegQueryInfoKeyA(HKEY key, LPSTR className, DWORD* classSize, DWORD* reserved,
                         DWORD* subKeys, DWORD* longestSubKey, DWORD* longestClass, DWORD* values,
                         DWORD* longestValueName, DWORD* longestValue, DWORD* securitySize,
                         FILETIME* lastWrite);

// ---- Profile files ----

/// The value of a key, or with a null key the section's key names, or with both null the section
/// names, each closed by a NUL; gives the characters copied, without the last NUL.
DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR buffer,
                               DWORD size, LPCSTR path);
/// Sets a value; with a null value removes the key, with a null key the whole section.
BOOL WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR path);

// ---- Files and folders ----

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x02;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD CREATE_NEW = 1;

struct WIN32_FIND_DATAA {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  char cFileName[MAX_PATH];
  char cAlternateFileName[14];
};

/// The first entry that the path names, `*` and `?` in its last part standing for any text and any
/// character; INVALID_HANDLE_VALUE for none. Hidden entries are found, names compare without case.
HANDLE FindFirstFileA(LPCSTR path, WIN32_FIND_DATAA* data);
BOOL FindClose(HANDLE search);
BOOL DeleteFileA(LPCSTR path);
/// Makes a new file for writing: `access` is GENERIC_WRITE, `disposition` CREATE_NEW, the rest 0 or
/// null. Fails where anything of that name is there, a link included; the file is its owner's
/// alone.
HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD attributes, HANDLE pattern);
BOOL WriteFile(HANDLE file, const void* bytes, DWORD count, DWORD* written, void* overlapped);
BOOL CloseHandle(HANDLE handle);
/// The temporary folder, closed by a backslash; gives the length without the NUL.
DWORD GetTempPathA(DWORD size, LPSTR buffer);
/// Makes an empty file of a new name of prefix, hexadecimal digits and ".tmp" (`number` is 0).
UINT GetTempFileNameA(LPCSTR folder, LPCSTR prefix, UINT number, LPSTR name);
/// The folders of the Windows world, without a closing backslash; gives the length without the NUL.
UINT GetSystemDirectoryA(LPSTR buffer, UINT size);
UINT GetWindowsDirectoryA(LPSTR buffer, UINT size);

// ---- Shell ----

constexpr UINT SHGFI_SMALLICON = 0x0001;
constexpr UINT SHGFI_OPENICON = 0x0002;
constexpr UINT SHGFI_USEFILEATTRIBUTES = 0x0010;
constexpr UINT SHGFI_SYSICONINDEX = 0x4000;
constexpr int SW_SHOWNORMAL = 1;

struct SHFILEINFOA {
  HANDLE hIcon;
  int iIcon;
  DWORD dwAttributes;
  char szDisplayName[MAX_PATH];
  char szTypeName[80];
};

/// The shell's image list as result and the icon number of a path in `iIcon`; with
/// SHGFI_USEFILEATTRIBUTES only the name is looked at. A path that isn't there gives 0 and leaves
/// the record alone.
DWORD_PTR SHGetFileInfoA(LPCSTR path, DWORD attributes, SHFILEINFOA* info, UINT infoSize,
                         UINT flags);
/// Opens a mail or web link ("open") with the desktop's program; a result above 32 is success.
HINSTANCE ShellExecuteA(HWND owner, LPCSTR operation, LPCSTR file, LPCSTR parameters, LPCSTR folder,
                        int show);
/// Starts a Windows command line and doesn't wait for it; a result above 31 is success.
UINT WinExec(LPCSTR commandLine, UINT show);

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

/// A window's procedure (GWLP_WNDPROC) or style bits. Setting gives the value before, 0 for none.
LONG_PTR GetWindowLongPtrA(HWND window, int index);
LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Runs the window's present procedure; 0 where there is no such window.
LRESULT SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Named slots of a window; names compare without case. GetPropA and RemovePropA give null for an
/// absent one.
HANDLE GetPropA(HWND window, LPCSTR name);
BOOL SetPropA(HWND window, LPCSTR name, HANDLE value);
HANDLE RemovePropA(HWND window, LPCSTR name);

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
constexpr UINT LVM_SETITEMA = 0x1006;
constexpr UINT LVM_HITTEST = 0x1012;
constexpr UINT LVM_SETCOLUMNWIDTH = 0x101E;
constexpr UINT LVM_GETSELECTEDCOUNT = 0x1032;
constexpr UINT LVM_SETEXTENDEDLISTVIEWSTYLE = 0x1036;
constexpr UINT NM_RCLICK = static_cast<UINT>(-5);

struct LVITEMA {
  UINT mask;
  int iItem;
  int iSubItem;
  UINT state;
  UINT stateMask;
  LPSTR pszText;
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
