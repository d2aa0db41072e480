// The window that asks for a prefix, driven by keys and drops: what it finds, tells and gives back.
#include "windows/qt/prefix_choice.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <fstream>
#include <functional>

#include "support/scratch_world.h"
#include "support/started_toolkit.h"

namespace torvane {
namespace {

namespace fs = std::filesystem;

class PrefixChoiceTest : public testing::ScratchWorld {
 protected:
  PrefixChoiceTest() {
    testing::StartedToolkit();
    Make("ledger", "Accounts", "CrossOver", 0);
    Make("harbour", "Harbour", "Heroic", 2);
    Make("office", "Office", "Bottles", 1);
  }

  fs::path Place(const std::string& folder) const { return Host(Folder()) / folder; }

  /// Makes a prefix in which so many of the known lists have entries.
  void Make(const std::string& folder, const std::string& name, const std::string& manager,
            int lists) {
    fs::create_directories(Place(folder) / "drive_c/windows");
    std::ofstream hive(Place(folder) / "user.reg");
    hive << "WINE REGISTRY Version 2\n";
    const char* const keys[] = {
        R"([Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RunMRU] 1)",
        R"([Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit\\Favorites] 1)"};
    for (int i = 1; i <= lists; ++i) hive << "\n" << keys[i - 1] << "\n\"a\"=\"x\"\n";
    prefixes_.push_back({Place(folder), name, manager});
  }

  /// Opens the window with the second prefix chosen and lets `acts` happen in it, which is to close
  /// it; gives the folder's name of what was chosen.
  std::string Ask(const std::function<void(QDialog&)>& acts) {
    QTimer::singleShot(0, qApp, [&acts] {
      auto* window = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_TRUE(window);
      acts(*window);
      if (window->isVisible()) {
        ADD_FAILURE() << "the window is still open";
        window->reject();
      }
    });
    const auto chosen = AskForPrefix(nullptr, prefixes_, prefixes_[1].root);
    return chosen ? chosen->root.filename().string() : "none";
  }

  static void Press(QObject& target, int key, const QString& text = {}) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&target, &event);
  }
  static void Drop(QDialog& window, const fs::path& folder) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.string()))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &drop);
  }
  static QTreeWidget& List(QDialog& window) { return *window.findChild<QTreeWidget*>(); }
  static std::string VisibleNames(QDialog& window) {
    std::string names;
    for (int i = 0; i < List(window).topLevelItemCount(); ++i)
      if (const auto* row = List(window).topLevelItem(i); !row->isHidden())
        names += row->text(0).toStdString() + " ";
    return names;
  }

  std::vector<posix::FoundPrefix> prefixes_;
};

TEST_F(PrefixChoiceTest, EnterOpensWhatIsChosenAndTypingFinds) {
  EXPECT_EQ(Ask([](QDialog& window) { Press(List(window), Qt::Key_Return); }), "harbour");
  EXPECT_EQ(Ask([](QDialog& window) {
              // By the manager, from the list itself; then without a fit nothing can be opened.
              for (const QChar letter : QStringLiteral("OTTLE")) Press(List(window), 0, letter);
              EXPECT_EQ(VisibleNames(window), "Office ");
              Press(List(window), 0, "#");
              EXPECT_EQ(VisibleNames(window), "");
              Press(List(window), Qt::Key_Return);
              EXPECT_TRUE(window.isVisible());
              Press(List(window), Qt::Key_Backspace);
              Press(*window.findChild<QLineEdit*>(), Qt::Key_Return);
            }),
            "office");
  EXPECT_EQ(Ask([](QDialog& window) {
              Press(*window.findChild<QLineEdit*>(), Qt::Key_Up);
              Press(List(window), Qt::Key_Enter);
            }),
            "ledger");
  EXPECT_EQ(Ask([](QDialog& window) { Press(window, Qt::Key_Escape); }), "none");
}

TEST_F(PrefixChoiceTest, RowsTellTheirListsToEyeAndScreenReader) {
  Ask([](QDialog& window) {
    QElapsedTimer clock;
    clock.start();
    const auto lists = [&window](int row) {
      return List(window).topLevelItem(row)->text(2).toStdString();
    };
    while (lists(2).empty() && !clock.hasExpired(10'000)) QCoreApplication::processEvents();
    EXPECT_EQ(lists(0) + lists(1) + lists(2), "021");
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(&List(window));
    EXPECT_EQ(table->text(QAccessible::Name), "Wine prefixes");
    EXPECT_EQ(table->tableInterface()->cellAt(2, 1)->text(QAccessible::Name), "Bottles");
    window.reject();
  });
}

TEST_F(PrefixChoiceTest, ADroppedFolderIsOpenedOrRefusedByWhatWasLookedFor) {
  fs::create_directories(Place("proton/pfx/drive_c/windows"));
  fs::create_directories(Place("photos"));
  EXPECT_EQ(Ask([this](QDialog& window) {
              Drop(window, Place("photos"));
              EXPECT_TRUE(window.isVisible());
              bool isTold = false;
              for (const auto* label : window.findChildren<QLabel*>())
                isTold |= label->text().contains("photos") && label->text().contains("drive_c");
              EXPECT_TRUE(isTold);
              Drop(window, Place("proton"));
            }),
            "pfx");
}

}  // namespace
}  // namespace torvane
