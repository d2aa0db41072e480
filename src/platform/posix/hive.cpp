// Reading takes no lock: a hive is replaced by renaming, so what is opened is whole. Writing takes
// the folder's lock, looks whether the file is still the one that was read, and if not does the
// pending changes again on what stands there now.
#include "platform/posix/hive.h"

#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/posix/prefix.h"
#include "platform/posix/wine_server.h"

namespace torvane::posix {
namespace {

std::string& RefusalNote() {
  static std::string note;
  return note;
}

const AtForget kForgetNote([] { RefusalNote().clear(); });

void NoteUseByWine(const std::filesystem::path& prefix) {
  RefusalNote() =
      "The Wine prefix " + prefix.string() +
      " is in use: while Windows programs run in it, Wine keeps the registry in memory and would "
      "overwrite the change. Close them, or end them all with the command \"WINEPREFIX='" +
      prefix.string() + "' wineserver -k\", and do it again.";
}

/// The architecture that another hive of the prefix names; empty for none.
std::string ArchitectureOf(const std::filesystem::path& hive) {
  constexpr int kHeaderLines = 8;
  constexpr std::string_view kOption = "#arch=";
  std::ifstream file(hive);
  std::string line;
  for (int i = 0; i < kHeaderLines && std::getline(file, line); ++i)
    if (line.starts_with(kOption)) return line.substr(kOption.size());
  return {};
}

}  // namespace

std::string HiveHeader(HiveRole role, std::string_view architecture) {
  std::string header(kHiveFirstLine);
  header += "\n;; All keys relative to REGISTRY\\\\";
  header += role == HiveRole::Machine ? "Machine\n" : "User\\\\S-1-5-21-0-0-0-1000\n";
  if (!architecture.empty()) header.append("\n#arch=").append(architecture).append("\n");
  return header;
}

Hive::Hive(std::filesystem::path file, HiveRole role) : file_(std::move(file)), role_(role) {}

std::unique_ptr<HiveImage> Hive::read() {
  readError_.clear();
  std::error_code ignored;
  isLink_ = std::filesystem::is_symlink(std::filesystem::symlink_status(file_, ignored));
  FileContent content;
  try {
    content = ReadWholeFile(file_);
    RemoveStaleReplacement(ResolveTarget(file_));
  } catch (const std::system_error& error) {
    readError_ = "it can't be read: " + error.code().message();
  }
  // Wine doesn't start on a prefix whose hives name different architectures.
  std::string architecture;
  if (!content.stamp.exists() && role_ == HiveRole::User)
    architecture = ArchitectureOf(file_.parent_path() / "system.reg");
  return std::make_unique<HiveImage>(std::move(content), HiveHeader(role_, architecture));
}

/// Whether the file is as it was read. Asking the open file is a third of the cost of asking for
/// the path, and refresh() is called for every value that is read.
bool Hive::isCurrent() const {
  if (isLink_ || !image_->descriptor()) return StampOf(file_) == image_->stamp();
  return StampOf(image_->descriptor()) == image_->stamp();
}

void Hive::refresh() {
  if (image_ && (isPending_ || isCurrent())) return;
  image_.reset();
  image_ = read();
  ++generation_;
}

std::string Hive::problem() const {
  const std::string& problem = readError_.empty() ? image_->problem() : readError_;
  return problem.empty() ? problem : file_.filename().string() + ", " + problem;
}

LSTATUS Hive::mayChange() {
  if (role_ == HiveRole::Machine) return ERROR_ACCESS_DENIED;
  if (const std::string what = problem(); !what.empty()) {
    RefusalNote() = what + "\n\nThe file is only read; nothing is written to it.";
    return ERROR_REGISTRY_CORRUPT;
  }
  if (isPending_ && isChecked_) return ERROR_SUCCESS;
  try {
    CheckReplaceable(ResolveTarget(file_));
  } catch (const std::system_error& error) {
    RefusalNote() = file_.string() + " can't be written: " + ReasonOf(error) + ".";
    return ERROR_ACCESS_DENIED;
  }
  if (role_ == HiveRole::User && WineServerRuns(file_.parent_path())) {
    NoteUseByWine(file_.parent_path());
    return ERROR_SHARING_VIOLATION;
  }
  isChecked_ = true;
  return ERROR_SUCCESS;
}

void Hive::noteChange() {
  isPending_ = true;
  MarkChanged(*this);
}

/// The file as it is now, with the pending changes done again.
std::unique_ptr<HiveImage> Hive::takeOver() {
  auto fresh = read();
  if (!readError_.empty() || !fresh->problem().empty())
    throw WriteRefused(std::errc::illegal_byte_sequence,
                       file_.filename().string() +
                           " is damaged: " + (readError_.empty() ? fresh->problem() : readError_));
  image_->replayOnto(*fresh);
  return fresh;
}

void Hive::writeBack() {
  if (!isPending_) return;
  isChecked_ = false;
  const std::filesystem::path target = ResolveTarget(file_);
  const FolderLock lock(target.parent_path());
  std::optional<WineServerHold> hold;
  if (role_ == HiveRole::User) hold.emplace(file_.parent_path());
  // Until the new file stands, the changes are kept as they were made: what there was nothing to
  // delete of now may be there at the next try.
  std::unique_ptr<HiveImage> fresh;
  if (StampOf(target) != image_->stamp()) fresh = takeOver();
  const HiveImage& image = fresh ? *fresh : *image_;
  std::vector<RenderedPiece> pieces = image.render(HiveTimeNow());
  FileReplacement replacement(target);
  image.write(pieces, replacement);
  FileDescriptor descriptor;
  const FileStamp stamp = replacement.commit(&descriptor);
  if (fresh) {
    image_ = std::move(fresh);
    ++generation_;
  }
  image_->adopt(std::move(pieces), stamp, std::move(descriptor));
  isPending_ = false;
}

std::string TakeRefusalNote() {
  return std::exchange(RefusalNote(), {});
}

}  // namespace torvane::posix
