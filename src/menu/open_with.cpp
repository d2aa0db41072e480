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

Text Quoted(const Text& text) {
  return u"\"" + text + u"\"";
}

// A double quote in an entry would end its quotes on the command line and let the rest of its name
// pass for arguments of its own.
bool CanBePassed(const ListItem& item) {
  return !IsMissing(item.Tag()) && File(item).find(u'"') == Text::npos;
}

Text SingleArgument(Argument argument, const ListItem& item) {
  switch (argument) {
    case Argument::BareFile:
      return File(item);
    case Argument::BareText:
      return item.Text();
    default:
      return Quoted(File(item));
  }
}

Text AllArguments(const List& list) {
  Text arguments;
  for (int n = 1; n <= list.ListItems().Count(); ++n) {
    const ListItem& item = list.ListItems()(n);
    if (item.Selected() && CanBePassed(item)) arguments += Quoted(File(item)) + u' ';
  }
  return arguments;
}

void Start(const Text& commandLine) {
  constexpr UINT kLastError = 31;
  if (WinExec(ToAnsi(commandLine).c_str(), SW_SHOWNORMAL) > kLastError) return;
  CurrentToolkit().ShowMessage(u"The program could not be started:\r\n" + commandLine,
                               MB_OK | MB_ICONEXCLAMATION, ApplicationTitle());
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
    Start(programPath + u' ' + AllArguments(list));
    return;
  }
  if (SendMessageA(list.hWnd(), LVM_GETSELECTEDCOUNT, 0, 0) >= 2) {
    CurrentToolkit().ShowMessage(u"Please select only 1 file.", MB_OK, ApplicationTitle());
    return;
  }
  const ListItem* item = list.SelectedItem();
  if (!item || !CanBePassed(*item)) return;
  Start(programPath + u' ' + SingleArgument(row->argument, *item));
}

}  // namespace torvane
