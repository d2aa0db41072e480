#include "platform/posix/disk/shared_file.h"

#include <cerrno>
#include <utility>

namespace torvane::posix {
namespace {

/// Calls a function when it goes.
template <typename Function>
class AtEnd {
 public:
  explicit AtEnd(Function function) : function_(std::move(function)) {}
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;
  ~AtEnd() { function_(); }

 private:
  Function function_;
};

}  // namespace

SharedFile::SharedFile(std::filesystem::path path, std::uint64_t limit, Vanished vanished)
    : path_(std::move(path)), limit_(limit), vanished_(vanished) {}

// Users know the file by its place, not by the way through the prefix's links.
std::string SharedFile::hostPath() const {
  std::error_code error;
  const std::filesystem::path place = std::filesystem::weakly_canonical(path_, error);
  return error ? path_.string() : place.string();
}

void SharedFile::loadFailed(const std::system_error&) {
  throw;
}

/// Asking the open file is a third of the cost of asking for the path, and refresh() is called for
/// every value that is read. An open file tells too when its name has gone to another.
FileStamp SharedFile::stampNow() const {
  return isDirect_ && reading_.descriptor ? StampOf(reading_.descriptor) : StampOf(path_);
}

/// The file's content where it isn't that of the reading; else nothing, and the reading counts from
/// now on.
std::optional<FileContent> SharedFile::readIfChanged(Reading& reading, const FileStamp& now) const {
  if (reading.stamp.proves(now)) return std::nullopt;
  const std::int64_t begun = FileClock();
  FileContent content = ReadWholeFile(path_, limit_);
  const bool isSame =
      content.stamp.exists() && reading.stamp.stamp().exists() && isReadFrom(content.view());
  reading.stamp = ReadingStamp(content.stamp, begun);
  reading.descriptor = std::move(content.descriptor);
  if (isSame) return std::nullopt;
  return content;
}

void SharedFile::refresh() {
  if (hasRead_ && (hasChanges_ || reading_.stamp.proves(stampNow()))) return;
  std::error_code ignored;
  isDirect_ = std::filesystem::canonical(path_, ignored) == path_;
  try {
    // What a writer left behind that was killed in the middle.
    RemoveStaleReplacement(ResolveTarget(path_));
    auto content = readIfChanged(reading_, StampOf(path_));
    wasThere_ = wasThere_ || reading_.stamp.stamp().exists();
    hasRead_ = true;
    if (content) load(std::move(*content));
  } catch (const std::system_error& error) {
    reading_ = {};
    hasRead_ = false;
    loadFailed(error);
  }
}

void SharedFile::refuseVanished() const {
  throw WriteRefused(std::errc::no_such_file_or_directory,
                     "another program has taken it away since it was read");
}

void SharedFile::checkChange() {
  if (hasChanges_ && isChecked_) return;
  const std::filesystem::path target = ResolveTarget(path_);
  if (wasThere_ && vanished_ == Vanished::Refused && !StampOf(target).exists()) refuseVanished();
  CheckReplaceable(target);
  // The file that was read lives on, but not here: its folder has gone elsewhere.
  const FileStamp& read = reading_.stamp.stamp();
  if (hasRead_ && !hasChanges_ && read.exists() && stampNow() == read && StampOf(target) != read) {
    reading_ = {};
    throw WriteRefused(std::errc::no_such_file_or_directory,
                       "another file stands at its place than the one that was read");
  }
  checkUse();
  folder_ = StampOf(target.parent_path());
  isChecked_ = true;
}

/// A folder that another was put in the place of holds another file, which the changes don't mean.
void SharedFile::checkFolder(const std::filesystem::path& target) const {
  const FileStamp now = StampOf(target.parent_path());
  if (now.device == folder_.device && now.inode == folder_.inode) return;
  throw WriteRefused(std::errc::no_such_file_or_directory,
                     "its folder isn't the one any more that it was read in");
}

void SharedFile::noteChange() {
  hasChanges_ = true;
  MarkChanged(*this);
}

void SharedFile::writeBack() {
  constexpr int kAttempts = 8;
  if (!hasChanges_) return;
  isChecked_ = false;
  const std::filesystem::path target = ResolveTarget(path_);
  const FolderLock lock(target.parent_path());
  checkFolder(target);
  const std::unique_ptr<WriteHold> hold = holdOff();
  const AtEnd drop([this] {
    freshReading_.reset();
    abandon();
  });
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (!replace(target)) continue;
    hasChanges_ = mustSync_;
    if (mustSync_) SyncFolder(target.parent_path());
    mustSync_ = hasChanges_ = false;
    if (hold) hold->confirm();
    return;
  }
  throw std::system_error(EBUSY, std::generic_category(), target.string());
}

/// Makes the fresh state where the file isn't the one that the state was made of.
void SharedFile::lookAgain(const std::filesystem::path& target) {
  Reading& known = freshReading_ ? *freshReading_ : reading_;
  Reading reading{known.stamp, {}};
  auto content = readIfChanged(reading, StampOf(target));
  if (!content) {
    known.stamp = reading.stamp;
    if (reading.descriptor) known.descriptor = std::move(reading.descriptor);
    return;
  }
  if (!content->stamp.exists() && wasThere_ && vanished_ == Vanished::Refused) refuseVanished();
  freshReading_.reset();
  abandon();
  loadFresh(std::move(*content));
  freshReading_ = std::move(reading);
}

/// Gives false where a program that takes no lock has changed the file meanwhile.
bool SharedFile::replace(const std::filesystem::path& target) {
  lookAgain(target);
  Reading stands;
  if (render()) {
    FileReplacement replacement(target);
    write(replacement);
    replacement.sync();
    const ReadingStamp& read = freshReading_ ? freshReading_->stamp : reading_.stamp;
    Reading now{read, {}};
    if (readIfChanged(now, StampOf(target))) return false;
    const auto isRead = [this](std::string_view bytes) { return isReadFrom(bytes); };
    auto stamp = replacement.commit(now.stamp.stamp(), isRead, stands.descriptor);
    if (!stamp) return false;
    // The next reading tells whether this is what stands there.
    stands.stamp = ReadingStamp(*stamp, 0);
    mustSync_ = true;
  } else {
    stands = std::move(freshReading_ ? *freshReading_ : reading_);
  }
  adopt();
  reading_ = std::move(stands);
  wasThere_ = wasThere_ || reading_.stamp.stamp().exists();
  return true;
}

}  // namespace torvane::posix
