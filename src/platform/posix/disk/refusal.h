// What reading and writing fail with beyond the system's own errors.
#pragma once

#include <string>
#include <system_error>

namespace torvane::posix {

/// What became of a write that failed.
enum class WriteFailureKind {
  OldStands,   ///< the file stands as it was
  HeldByUse,   ///< it does, because a program that runs has it in memory and would write over it
  NewStands,   ///< the new content is in its place, but not for certain on the disk
  MayNotLast,  ///< it is on the disk, but a program that has just started may write over it
};

/// What this layer refuses, for a reason in its own words (English, UTF-8).
class Refusal : public std::system_error {
 public:
  Refusal(std::errc code, const std::string& reason)
      : std::system_error(std::make_error_code(code)), reason_(reason) {}
  const std::string& reason() const { return reason_; }

 private:
  std::string reason_;
};

/// A write that is refused.
class WriteRefused : public Refusal {
 public:
  WriteRefused(std::errc code, const std::string& reason,
               WriteFailureKind kind = WriteFailureKind::OldStands)
      : Refusal(code, reason), kind_(kind) {}
  WriteFailureKind kind() const { return kind_; }

 private:
  WriteFailureKind kind_;
};

/// The new file is in its place, but a power cut may bring the old one back: the folder couldn't be
/// synced.
class NotSynced : public std::system_error {
 public:
  explicit NotSynced(int code) : std::system_error(code, std::generic_category()) {}
};

/// Why something failed, for the user: the refusal's words, else the system's (UTF-8).
std::string ReasonOf(const std::system_error& error);
WriteFailureKind KindOf(const std::system_error& error);

}  // namespace torvane::posix
