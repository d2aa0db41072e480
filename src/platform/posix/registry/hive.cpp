#include "platform/posix/registry/hive.h"

#include <fstream>
#include <system_error>
#include <utility>

#include "platform/posix/disk/forget.h"
#include "platform/posix/prefix/new_hive.h"
#include "platform/posix/prefix/wine_server.h"
#include "platform/posix/registry/registry.h"

namespace torvane::posix {
namespace {

/// Wine's hives have some tens of megabytes.
constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 30;

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

Hive::Hive(std::filesystem::path file, HiveRole role)
    : SharedFile(std::move(file), kMostBytes,
                 role == HiveRole::Own ? Vanished::MadeAnew : Vanished::Refused),
      role_(role) {}

std::unique_ptr<HiveImage> Hive::parse(FileContent content) const {
  // Wine doesn't start on a prefix whose hives name different architectures.
  std::string architecture;
  if (!content.stamp.exists() && role_ == HiveRole::User)
    architecture = ArchitectureOf(path().parent_path() / "system.reg");
  const HiveRoot root = role_ == HiveRole::Machine ? HiveRoot::Machine : HiveRoot::User;
  return std::make_unique<HiveImage>(std::move(content), NewHive(root, architecture));
}

void Hive::load(FileContent content) {
  readError_.clear();
  // The old one goes first: two of them needn't be held.
  image_.reset();
  image_ = parse(std::move(content));
  ++generation_;
}

void Hive::loadFailed(const std::system_error& error) {
  load({});
  readError_ = "it can't be read: " + ReasonOf(error);
}

void Hive::loadFresh(FileContent content) {
  fresh_ = parse(std::move(content));
  if (!fresh_->problem().empty())
    throw WriteRefused(std::errc::illegal_byte_sequence,
                       path().filename().string() + " is damaged: " + fresh_->problem());
  image_->replayOnto(*fresh_);
}

bool Hive::render() {
  pieces_ = current().render(HiveTimeNow(), path().string());
  return !pieces_.empty();
}

void Hive::adopt() {
  if (fresh_) {
    image_ = std::move(fresh_);
    ++generation_;
  }
  image_->adopt(std::exchange(pieces_, {}), path().string());
}

void Hive::abandon() {
  fresh_.reset();
  pieces_.clear();
}

void Hive::checkUse() const {
  if (role_ == HiveRole::User && WineServerRuns(path().parent_path())) throw PrefixInUse();
}

std::unique_ptr<WriteHold> Hive::holdOff() {
  if (role_ != HiveRole::User) return nullptr;
  return std::make_unique<WineServerHold>(path().parent_path());
}

std::string Hive::problem() const {
  const std::string& problem = readError_.empty() ? image_->problem() : readError_;
  return problem.empty() ? problem : path().filename().string() + ", " + problem;
}

LSTATUS Hive::mayChange() {
  if (role_ == HiveRole::Machine) return ERROR_ACCESS_DENIED;
  if (const std::string what = problem(); !what.empty()) {
    RefusalNote() = what + "\n\nThe file is only read; nothing is written to it.";
    return ERROR_REGISTRY_CORRUPT;
  }
  try {
    checkChange();
    return ERROR_SUCCESS;
  } catch (const PrefixInUse&) {
    NoteUseByWine(path().parent_path());
    return ERROR_SHARING_VIOLATION;
  } catch (const std::system_error& error) {
    RefusalNote() = path().string() + " can't be written: " + ReasonOf(error) + ".";
    return ERROR_ACCESS_DENIED;
  }
}

std::string TakeRefusalNote() {
  return std::exchange(RefusalNote(), {});
}

}  // namespace torvane::posix
