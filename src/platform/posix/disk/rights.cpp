// libacl and libattr know the forms of lists and attributes; what is ours is the order: the
// attributes while the file is still ours, the owner
// before the access list, since giving a file away clears bits; the mode's special bits last.
#include "platform/posix/disk/rights.h"

#include <acl/libacl.h>
#include <attr/libattr.h>
#include <fcntl.h>
#include <linux/capability.h>
#include <pwd.h>
#include <sys/acl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

#include "platform/posix/disk/refusal.h"

namespace torvane::posix {
namespace {

struct FreeAcl {
  // Freeing what was only held in memory loses nothing.
  void operator()(acl_t list) const { acl_free(list); }
};
using AccessList = std::unique_ptr<std::remove_pointer_t<acl_t>, FreeAcl>;

[[noreturn]] void Fail(const std::filesystem::path& path) {
  throw std::system_error(errno, std::generic_category(), path.string());
}

/// Whether this process may give files away.
bool MayGiveAway() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct sets[_LINUX_CAPABILITY_U32S_3] = {};
  return syscall(SYS_capget, &header, sets) == 0 && (sets[0].effective & (1U << CAP_CHOWN)) != 0;
}

std::string UserName(uid_t user) {
  const passwd* entry = getpwuid(user);
  return entry != nullptr ? entry->pw_name : std::to_string(user);
}

/// Gives the owner and the group; says whether the group could be kept.
bool GiveAway(const struct stat& old, int successor, const std::filesystem::path& file) {
  struct stat now {};
  if (fstat(successor, &now) != 0) Fail(file);
  if (old.st_uid != now.st_uid && fchown(successor, old.st_uid, static_cast<gid_t>(-1)) != 0)
    Fail(file);
  if (old.st_gid == now.st_gid) return true;
  if (fchown(successor, static_cast<uid_t>(-1), old.st_gid) == 0) return true;
  if (errno == EPERM) return false;
  Fail(file);
}

/// The rights of one class of users in an access list.
class Permissions {
 public:
  /// Throws std::system_error where the list has no such entry; every list has those of the owner,
  /// the group and the others.
  Permissions(acl_t list, acl_tag_t wanted, const std::filesystem::path& file) {
    acl_entry_t entry = nullptr;
    for (int which = ACL_FIRST_ENTRY; acl_get_entry(list, which, &entry) == 1;
         which = ACL_NEXT_ENTRY) {
      acl_tag_t tag = 0;
      if (acl_get_tag_type(entry, &tag) == 0 && tag == wanted && acl_get_permset(entry, &set_) == 0)
        return;
    }
    errno = EINVAL;
    Fail(file);
  }
  bool has(acl_perm_t right) const { return acl_get_perm(set_, right) == 1; }
  void remove(acl_perm_t right) { acl_delete_perm(set_, right); }

 private:
  acl_permset_t set_ = nullptr;
};

/// What is left of a list when the file goes to another group: those who were in the old one are
/// others now, and may no more than they could.
void LoseGroup(acl_t list, const std::filesystem::path& file) {
  Permissions group(list, ACL_GROUP_OBJ, file);
  Permissions others(list, ACL_OTHER, file);
  constexpr std::array<acl_perm_t, 3> kRights{ACL_READ, ACL_WRITE, ACL_EXECUTE};
  for (const acl_perm_t right : kRights) {
    if (!group.has(right)) others.remove(right);
    group.remove(right);
  }
}

/// The access list of a file: without extended entries what its mode says.
AccessList ListOf(int old, mode_t mode, const std::filesystem::path& file) {
  AccessList list(acl_get_fd(old));
  if (!list && (errno == ENOTSUP || errno == ENOSYS)) list.reset(acl_from_mode(mode));
  if (!list) Fail(file);
  return list;
}

void GiveList(acl_t list, int successor, const std::filesystem::path& file) {
  if (acl_set_fd(successor, list) == 0) return;
  if (errno != ENOTSUP && errno != ENOSYS) Fail(file);
  // A file system without lists: a list that says no more than a mode becomes one.
  mode_t mode = 0;
  if (acl_equiv_mode(list, &mode) != 0 || fchmod(successor, mode) != 0) Fail(file);
}

int IsUsers(const char* attribute, error_context*) {
  return std::string_view(attribute).starts_with("user.") ? 1 : 0;
}

void CopyAttributes(int old, int successor, const std::filesystem::path& file) {
  if (attr_copy_fd(file.c_str(), old, file.c_str(), successor, IsUsers, nullptr) == 0) return;
  if (errno != ENOTSUP && errno != ENOSYS) Fail(file);
}

}  // namespace

void CheckOwner(const std::filesystem::path& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0 || status.st_uid == geteuid() || MayGiveAway()) return;
  throw WriteRefused(std::errc::operation_not_permitted,
                     "it belongs to the user " + UserName(status.st_uid) +
                         ", and a new file in its place would not");
}

void TakeOverRights(const std::filesystem::path& file, const FileDescriptor& successor) {
  const FileDescriptor predecessor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!predecessor && errno == ENOENT) return;
  struct stat old {};
  if (!predecessor || fstat(predecessor.get(), &old) != 0) Fail(file);
  CopyAttributes(predecessor.get(), successor.get(), file);
  const bool keepsGroup = GiveAway(old, successor.get(), file);
  const AccessList list = ListOf(predecessor.get(), old.st_mode, file);
  if (!keepsGroup) LoseGroup(list.get(), file);
  GiveList(list.get(), successor.get(), file);
  // The bits that no list has: the sticky one, and whose rights a program gets that is run.
  const mode_t special = old.st_mode & (keepsGroup ? 07000U : 05000U);
  struct stat now {};
  if (fstat(successor.get(), &now) != 0) Fail(file);
  if (special != 0 && fchmod(successor.get(), special | (now.st_mode & 0777U)) != 0) Fail(file);
}

}  // namespace torvane::posix
