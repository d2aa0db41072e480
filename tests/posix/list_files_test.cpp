// What commands on lists leave of the files: what stood there where they are refused or taken back.
#include <sys/stat.h>

#include <regex>

#include "editing/delete_commands.h"
#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/disk/forget.h"
#include "posix/hive_world.h"
#include "readers/basListFill.h"
#include "readers/list_description.h"
#include "storage/raised_error.h"
#include "support/list_window.h"

namespace torvane::testing {
namespace {

class ListFilesTest : public HiveWorld {
 protected:
  void Fill(const Text& row) {
    ClearEntryList(list_);
    FillByListType(EntryFromRow(row), list_);
    ShowUndoHint(context_);
  }
  void Put(const std::string& hive) {
    posix::ForgetWorld();
    Replace(UserHive(), hive);
    Fill(u"Test,TorvaneTest\\List,0,*,File,1,MRUCount,S,*");
  }
  void DeleteRow(int row) {
    for (int n = 1; n <= list_.ListItems().Count(); ++n) list_.ListItems()(n).Selected(n == row);
    DeleteSelectedEntries(context_);
  }
  static std::string WithoutTimes(const std::string& hive) {
    return std::regex_replace(hive, std::regex("(List\\] |#time=)[0-9a-f]+"), "$1");
  }

  RecordingToolkit toolkit_;
  Form form_{BorderStyle::Sizable};
  List list_{form_, u"List"};
  StatusBar status_{form_, u"Status", {0, 80, 80}};
  Tree tree_{form_, u"Tree"};
  UndoStore undo_;
  const DeleteContext context_{list_, status_, tree_, undo_};
};

const std::string kHive =
    kHeader +
    "\n[Software\\\\TorvaneTest\\\\List] 1054450800 17\n#time=1c9\n#class=\"c\"\n"
    "; one\n\"File2\" = \"C:\\\\Two\" ; behind\n\"File1\"=hex(1):43,00,\\\n  "
    "3a,00,5c,00,31,00,00,00\n"
    "@=str(2):\"%windir%\\\\x\"\n\n; two\n\"odd\"=hex:01,02\n\"MRUCount\"=\"2\"\n\"n\"=dword:7\n"
    "\n[Software\\\\TorvaneTest\\\\Listen] 2\n\"o\"=\"1\"";

TEST_F(ListFilesTest, TheKeysLinesComeBackToTheByte) {
  Put(kHive);
  ASSERT_GE(list_.ListItems().Count(), 4);
  DeleteRow(2);
  Save();
  const std::string once = Read(UserHive());
  EXPECT_EQ(once.find("; two"), once.rfind("; two"));
  EXPECT_TRUE(once.ends_with("Listen] 2\n\"o\"=\"1\""));
  DeleteAllEntries(context_);
  Save();
  UndoDelete(context_);
  Save();
  EXPECT_EQ(WithoutTimes(Read(UserHive())), WithoutTimes(once));
  UndoDelete(context_);
  Save();
  EXPECT_EQ(WithoutTimes(Read(UserHive())), WithoutTimes(kHive));
}

TEST_F(ListFilesTest, WhatIsTakenBackBeforeItIsWrittenWritesNothing) {
  Put(kHive);
  const auto stamp = posix::StampOf(UserHive());
  DeleteRow(1);
  DeleteAllEntries(context_);
  UndoDelete(context_);
  UndoDelete(context_);
  Save();
  EXPECT_EQ(posix::StampOf(UserHive()), stamp);
}

TEST_F(ListFilesTest, WhatMayNotBeWrittenLeavesTheRows) {
  MakeWindowsFile("list.ini", "[L]\r\nFile1=C:\\A\r\nFile2=C:\\B\r\nFile3=C:\\C\r\n");
  const struct {
    std::filesystem::path file;
    Text row;
  } lists[] = {{UserHive(), u"Test,TorvaneTest\\List,0,*,File,1,MRUCount,S,*"},
               {Host("C:\\windows\\list.ini"), u"X,list.ini,20,L,File,1,*,*,*"}};
  Put(kHive);
  for (const auto& [file, row] : lists) {
    SCOPED_TRACE(file);
    const std::string bytes = Read(file);
    chmod(file.c_str(), 0444);
    Fill(row);
    const int count = list_.ListItems().Count();
    const ListCounters counters = Counters();
    EXPECT_GE(count, 3);
    EXPECT_THROW(DeleteRow(2), RaisedError);
    EXPECT_THROW(DeleteAllEntries(context_), RaisedError);
    EXPECT_THROW(DeleteMissingEntries(context_), RaisedError);
    EXPECT_EQ(list_.ListItems().Count(), count);
    EXPECT_TRUE(list_.ListItems()(2).Selected());
    EXPECT_EQ(Counters().MissingCount, counters.MissingCount);
    EXPECT_EQ(Counters().DeletedCount, 0);
    EXPECT_EQ(list_.Hint(), u"");
    // Once it may be written, the same command goes, and nothing else goes with it.
    chmod(file.c_str(), 0644);
    DeleteRow(2);
    Save();
    EXPECT_NE(Read(file), bytes);
    Fill(row);
    EXPECT_EQ(list_.ListItems().Count(), count - 1);
  }
}

TEST_F(ListFilesTest, ColumnsStandWhereTheProgramsOwnKeyCannotBeMade) {
  std::filesystem::create_directory(Prefix() / "torvane.reg");
  for (const auto& [type, columns] : {std::pair(u"21", 1), {u"22", 2}}) {
    Counters() = {7, 5, 3};
    ClearEntryList(list_);
    const MruEntry row = EntryFromRow(u"Viewer,viewer.ini," + Text(type) + u",List,Dir,1,*,*,*");
    EXPECT_THROW(FillByListType(row, list_), RaisedError);
    EXPECT_EQ(list_.ColumnHeaders().Count(), columns);
    EXPECT_EQ(Counters().TotalCount, 0);
    EXPECT_EQ(Counters().DeletedCount, 0);
    EXPECT_EQ(Counters().MissingCount, 0);
  }
}

}  // namespace
}  // namespace torvane::testing
