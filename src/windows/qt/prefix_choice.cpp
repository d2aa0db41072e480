// Name, manager and place are there at once. What has to be read of each prefix comes row by row
// while the window waits for its user, and whether Wine runs is asked again and again.
#include "windows/qt/prefix_choice.h"

#include <QAccessible>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <string>

#include "platform/posix/known_lists.h"
#include "platform/posix/prefix/prefix.h"
#include "platform/posix/prefix/wine_server.h"
#include "storage/text.h"
#include "windows/controls/toolkit.h"
#include "windows/qt/text.h"
#include "windows/qt/window.h"

namespace torvane {
namespace {

enum Column { kName, kManager, kLists, kWine, kPlace, kColumns };

/// Between two rows that are asked anew whether Wine runs there, in milliseconds.
constexpr int kAskAgain = 100;

QString FromPath(const std::filesystem::path& path) {
  return QFile::decodeName(path.c_str());
}

/// A place as it is shown: below the home folder by a tilde, without what could pass for more than
/// one line.
QString ShownPlace(const std::filesystem::path& root) {
  const QString home = FromPath(posix::HomeFolder());
  QString place = FromPath(root);
  if (!home.isEmpty() && place.startsWith(home + QLatin1Char('/')))
    place.replace(0, home.size(), QStringLiteral("~"));
  for (QChar& character : place)
    if (!character.isPrint()) character = QChar::ReplacementCharacter;
  return place;
}

class PrefixChoice : public QDialog {
 public:
  PrefixChoice(QWidget* owner, const std::vector<posix::FoundPrefix>& prefixes,
               const std::filesystem::path& selected);

  std::optional<posix::FoundPrefix> chosen() const { return chosen_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void fill();
  void arrange();
  void select(const std::filesystem::path& root);
  void filter();
  void readNext();
  void openCurrent();
  void openFolder(const QString& folder);
  void pickFolder();
  void choose(const posix::FoundPrefix& prefix);

  std::vector<posix::FoundPrefix> prefixes_;
  std::optional<posix::FoundPrefix> chosen_;
  QLineEdit& find_;
  QTreeWidget& list_;
  QLabel& note_;
  QPushButton* open_ = nullptr;
  QTimer reader_;
  std::size_t next_ = 0;  ///< the row that is read next
  bool allCounted_ = false;
};

PrefixChoice::PrefixChoice(QWidget* owner, const std::vector<posix::FoundPrefix>& prefixes,
                           const std::filesystem::path& selected)
    : QDialog(owner),
      prefixes_(prefixes),
      find_(MakeChild<QLineEdit>(this)),
      list_(MakeChild<QTreeWidget>(this)),
      note_(MakeChild<QLabel>(this)) {
  setWindowTitle(ToQString(ApplicationTitle() + u" \u2013 Choose a Wine prefix"));
  setAcceptDrops(true);
  fill();
  arrange();
  select(selected);
  list_.setFocus();
  QObject::connect(&reader_, &QTimer::timeout, this, [this] { readNext(); });
  reader_.start(0);
}

void PrefixChoice::fill() {
  list_.setColumnCount(kColumns);
  list_.setHeaderLabels({tr("Name"), tr("Manager"), tr("Lists"), tr("Wine"), tr("Place")});
  list_.setRootIsDecorated(false);
  list_.setUniformRowHeights(true);
  list_.setAllColumnsShowFocus(true);
  list_.setTextElideMode(Qt::ElideMiddle);
  list_.setAccessibleName(tr("Wine prefixes"));
  list_.setAccessibleDescription(
      tr("Enter opens the prefix, typing finds one by its name, manager or place."));
  for (const posix::FoundPrefix& prefix : prefixes_) {
    QTreeWidgetItem& row = MakeChild<QTreeWidgetItem>(&list_);
    row.setText(kName, QString::fromStdString(prefix.name));
    row.setText(kManager, QString::fromStdString(prefix.manager));
    row.setText(kPlace, ShownPlace(prefix.root));
    row.setToolTip(kName, row.text(kName));
    row.setToolTip(kPlace, row.text(kPlace));
    row.setTextAlignment(kLists, Qt::AlignRight | Qt::AlignVCenter);
  }
  QObject::connect(&list_, &QTreeWidget::itemActivated, this, [this] { openCurrent(); });
  QObject::connect(&list_, &QTreeWidget::currentItemChanged, this, [this] {
    if (open_) open_->setEnabled(list_.currentItem() != nullptr);
  });
  list_.installEventFilter(this);
}

void PrefixChoice::arrange() {
  auto& label = MakeChild<QLabel>(tr("&Find:"), this);
  label.setBuddy(&find_);
  find_.setClearButtonEnabled(true);
  find_.setAccessibleName(tr("Find"));
  find_.setAccessibleDescription(tr("Shows the prefixes that have this in name, manager or place"));
  find_.installEventFilter(this);
  QObject::connect(&find_, &QLineEdit::textChanged, this, [this] { filter(); });
  note_.setWordWrap(true);
  note_.setTextFormat(Qt::PlainText);
  note_.setText(tr("Or drop a prefix's folder here."));

  auto& buttons = MakeChild<QDialogButtonBox>(this);
  open_ = buttons.addButton(tr("&Open"), QDialogButtonBox::AcceptRole);
  open_->setDefault(true);
  QPushButton* folder = buttons.addButton(tr("&Another Folder..."), QDialogButtonBox::ActionRole);
  folder->setAutoDefault(false);
  buttons.addButton(QDialogButtonBox::Cancel)->setAutoDefault(false);
  QObject::connect(open_, &QPushButton::clicked, this, [this] { openCurrent(); });
  QObject::connect(folder, &QPushButton::clicked, this, [this] { pickFolder(); });
  QObject::connect(&buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto& search = MakeChild<QHBoxLayout>();
  search.addWidget(&label);
  search.addWidget(&find_);
  auto& column = MakeChild<QVBoxLayout>(this);
  column.addLayout(&search);
  column.addWidget(&list_, 1);
  column.addWidget(&note_);
  column.addWidget(&buttons);

  const int digit = fontMetrics().averageCharWidth();
  constexpr int kWidths[] = {28, 12, 7, 10};
  for (int i = 0; i < kPlace; ++i) list_.setColumnWidth(i, kWidths[i] * digit + digit);
  list_.header()->setStretchLastSection(true);
  constexpr int kWide = 108;
  constexpr int kHigh = 24;
  // The frame and the desktop's bars want some room as well.
  resize(QSize(kWide * digit, kHigh * fontMetrics().lineSpacing())
             .boundedTo(screen()->availableSize() * 9 / 10));
}

void PrefixChoice::select(const std::filesystem::path& root) {
  const auto found = std::ranges::find(prefixes_, root, &posix::FoundPrefix::root);
  const auto row = found == prefixes_.end() ? 0 : found - prefixes_.begin();
  list_.setCurrentItem(list_.topLevelItem(static_cast<int>(row)));
}

/// Shows the rows that have the text, and chooses the first of them unless one is chosen.
void PrefixChoice::filter() {
  const QString wanted = find_.text();
  QTreeWidgetItem* first = nullptr;
  for (int i = 0; i < list_.topLevelItemCount(); ++i) {
    QTreeWidgetItem* row = list_.topLevelItem(i);
    const bool fits = std::ranges::any_of(
        std::initializer_list<int>{kName, kManager, kPlace},
        [&](int column) { return row->text(column).contains(wanted, Qt::CaseInsensitive); });
    row->setHidden(!fits);
    if (fits && !first) first = row;
  }
  const QTreeWidgetItem* current = list_.currentItem();
  if (!current || current->isHidden()) list_.setCurrentItem(first);
  if (list_.currentItem()) list_.scrollToItem(list_.currentItem());
}

/// Reads what is told of the next row.
void PrefixChoice::readNext() {
  if (prefixes_.empty()) return reader_.stop();
  QTreeWidgetItem* row = list_.topLevelItem(static_cast<int>(next_));
  const std::filesystem::path& root = prefixes_[next_].root;
  const QString runs = posix::WineServerRuns(root) ? tr("running") : QString();
  if (row->text(kWine) != runs) row->setText(kWine, runs);
  if (!allCounted_) row->setText(kLists, QString::number(posix::CountKnownLists(root)));
  next_ = (next_ + 1) % prefixes_.size();
  if (next_ != 0 || allCounted_) return;
  allCounted_ = true;
  reader_.start(kAskAgain);
}

void PrefixChoice::openCurrent() {
  QTreeWidgetItem* row = list_.currentItem();
  if (!row || row->isHidden()) return;
  choose(prefixes_[static_cast<std::size_t>(list_.indexOfTopLevelItem(row))]);
}

void PrefixChoice::openFolder(const QString& folder) {
  try {
    choose(posix::PrefixNamed(QFile::encodeName(folder).toStdString()));
  } catch (const posix::PrefixError& error) {
    note_.setText(QString::fromUtf8(error.what()));
    QAccessibleEvent told(&note_, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
  }
}

void PrefixChoice::pickFolder() {
  QFileDialog dialog(this, tr("The folder of a Wine prefix"), FromPath(posix::HomeFolder()));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  // Most prefixes lie below a folder whose name begins with a point.
  dialog.setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Hidden);
  if (dialog.exec() == QDialog::Accepted) openFolder(dialog.selectedFiles().front());
}

void PrefixChoice::choose(const posix::FoundPrefix& prefix) {
  chosen_ = prefix;
  accept();
}

bool PrefixChoice::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
    openCurrent();
    return true;
  }
  if (watched == &list_) {
    // What is typed on the list is looked for.
    const bool types = !key.text().isEmpty() && key.text().front().isPrint() &&
                       !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (types) find_.setText(find_.text() + key.text());
    if (key.key() == Qt::Key_Backspace) find_.backspace();
    if (types || key.key() == Qt::Key_Backspace) return true;
  } else if (key.key() == Qt::Key_Down || key.key() == Qt::Key_Up) {
    list_.setFocus();
    QCoreApplication::sendEvent(&list_, event);
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

void PrefixChoice::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void PrefixChoice::dropEvent(QDropEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.isEmpty() || !urls.front().isLocalFile()) return;
  event->acceptProposedAction();
  openFolder(urls.front().toLocalFile());
}

}  // namespace

std::optional<posix::FoundPrefix> AskForPrefix(QWidget* owner,
                                               const std::vector<posix::FoundPrefix>& prefixes,
                                               const std::filesystem::path& selected) {
  PrefixChoice choice(owner, prefixes, selected);
  choice.exec();
  return choice.chosen();
}

}  // namespace torvane
