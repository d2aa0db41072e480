#include "menu/open_with.h"

#include <algorithm>
#include <array>

#include "platform/winapi.h"
#include "readers/MruEntry.h"
#include "storage/clsParse.h"
#include "storage/paths.h"
#include "windows/controls/toolkit.h"

namespace torvane {
namespace {

// How a program takes its entries, by the name of its executable, capitals included.
enum class Argument { QuotedFile, BareFile, BareText, EachQuotedFile };

struct ProgramRow {
  TextView executable;
  Argument argument;
};

constexpr std::array<ProgramRow, 6> kPrograms = {{
    {u"winzip32.exe", Argument::QuotedFile},
    {u"TOPSTYLE.exe", Argument::QuotedFile},
    {u"DevPad.exe", Argument::QuotedFile},
    {u"hhw.exe", Argument::BareFile},
    {u"iexplore.exe", Argument::BareText},
    {u"ConTEXT.exe", Argument::EachQuotedFile},
}};

Text File(const ListItem& item) {
  return AddBackslash(item.SubItems(1)) + item.Text();
}

// Behind a backslash the closing quote would be one of the argument's own characters.
Text Quoted(const Text& text) {
  const std::size_t behind = text.find_last_not_of(u'\\') + 1;
  return u"\"" + text + Text(text.size() - behind, u'\\') + u"\"";
}

// A double quote in an entry would end its quotes on the command line and let the rest of its name
// pass for arguments of its own.
bool CanBeQuoted(const ListItem& item) {
  return File(item).find(u'"') == Text::npos;
}

void ShowRefused(const Text& files) {
  CurrentToolkit().ShowMessage(
      u"A double quote stands in the name, which the program would misread:" + files,
      MB_OK | MB_ICONEXCLAMATION, ApplicationTitle());
}

// Windows programs take their own path off the front of the command line, so there one with blanks
// needs quotes; the system needs none, since it is told the program apart.
bool StartProgram(const Text& program, const Text& arguments) {
  Text commandLine = (program.find(u' ') == Text::npos ? program : Quoted(program)) + arguments;
  const bool isPath = program.find(u'\\') != Text::npos;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(isPath ? Wide(program) : nullptr, WideBuffer(commandLine), nullptr, nullptr,
                      FALSE, 0, nullptr, nullptr, &start, &started)) {
    return false;
  }
  for (const HANDLE handle : {started.hThread, started.hProcess}) {
    if (handle) CloseHandle(handle);
  }
  return true;
}

void Start(const Text& program, const Text& argument) {
  const Text arguments = u' ' + argument;
  if (StartProgram(program, arguments)) return;
  CurrentToolkit().ShowMessage(u"The program could not be started:\r\n" + program + arguments,
                               MB_OK | MB_ICONEXCLAMATION, ApplicationTitle());
}

void StartWithAll(const Text& program, const List& list) {
  Text arguments;
  Text refused;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    const ListItem& item = list.ListItems()(n);
    if (!item.Selected() || IsMissing(item.Tag())) continue;
    if (CanBeQuoted(item)) {
      arguments += Quoted(File(item)) + u' ';
    } else {
      refused += u"\r\n" + File(item);
    }
  }
  if (!refused.empty()) ShowRefused(refused);
  if (refused.empty() || !arguments.empty()) Start(program, arguments);
}

void StartWithOne(const Text& program, Argument argument, const ListItem& item) {
  if (IsMissing(item.Tag())) return;
  if (argument == Argument::BareFile) {
    Start(program, File(item));
  } else if (argument == Argument::BareText) {
    Start(program, item.Text());
  } else if (CanBeQuoted(item)) {
    Start(program, Quoted(File(item)));
  } else {
    ShowRefused(u"\r\n" + File(item));
  }
}

}  // namespace

void OpenWithProgram(const Text& programPath, List& list) {
  clsParse parser;
  const Text executable = parser.ElementAsString(parser.Initialise(programPath, u"\\"));
  const auto* row =
      std::find_if(kPrograms.begin(), kPrograms.end(),
                   [&](const ProgramRow& candidate) { return candidate.executable == executable; });
  if (row == kPrograms.end()) return;

  if (row->argument == Argument::EachQuotedFile) {
    StartWithAll(programPath, list);
  } else if (SendMessageW(list.hWnd(), LVM_GETSELECTEDCOUNT, 0, 0) >= 2) {
    CurrentToolkit().ShowMessage(u"Please select only 1 file.", MB_OK, ApplicationTitle());
  } else if (const ListItem* item = list.SelectedItem()) {
    StartWithOne(programPath, row->argument, *item);
  }
}

}  // namespace torvane
