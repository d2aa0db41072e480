// Resources on Linux. The files lie in the program as the assembler put them there (resources.S);
// the texts and the version come straight from resources/product.h.
#include "platform/posix/resources.h"

#include "platform/extras.h"

#include "product.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace torvane {
namespace posix {

enum class ResourceKind : std::uint32_t { kEnd, kData, kIcon, kCursor };

struct EmbeddedResource {
  ResourceKind kind;
  std::int32_t id;
  const std::byte* bytes;
  std::uint64_t size;
};

extern "C" const EmbeddedResource torvane_embedded_resources[];

}  // namespace posix

namespace {

using Kind = posix::ResourceKind;

std::span<const std::byte> FindResource(Kind kind, int id) {
  const posix::EmbeddedResource* row = posix::torvane_embedded_resources;
  for (; row->kind != Kind::kEnd; ++row) {
    if (row->kind == kind && row->id == id) return {row->bytes, row->size};
  }
  throw std::runtime_error("there is no resource " + std::to_string(id) + " of this kind");
}

// String `id` stands at index id - 1.
constexpr std::array<std::u16string_view, 8> kStrings = {
    u"" TORVANE_STRING_1, u"" TORVANE_STRING_2, u"" TORVANE_STRING_3, u"" TORVANE_STRING_4,
    u"" TORVANE_STRING_5, u"" TORVANE_STRING_6, u"" TORVANE_STRING_7, u"" TORVANE_STRING_8,
};

}  // namespace

std::span<const std::byte> DataResource(int id) {
  return FindResource(Kind::kData, id);
}

std::span<const std::byte> IconResource(int id) {
  return FindResource(Kind::kIcon, id);
}

std::span<const std::byte> CursorResource(int id) {
  return FindResource(Kind::kCursor, id);
}

std::u16string StringResource(int id) {
  if (id < 1 || id > static_cast<int>(kStrings.size())) return {};
  return std::u16string(kStrings[static_cast<std::size_t>(id) - 1]);
}

VersionRecord ReadVersionRecord() {
  return {u"" TORVANE_PRODUCT_NAME, u"" TORVANE_DESCRIPTION, u"" TORVANE_LEGAL_NOTICE,
          TORVANE_VERSION_MAJOR,    TORVANE_VERSION_MINOR,   TORVANE_VERSION_REVISION};
}

std::u16string ExecutableBaseName() {
  return std::filesystem::read_symlink("/proc/self/exe").stem().u16string();
}

// The icon numbers of this side are made as they are asked for: there is nothing to complete.
void CompleteShellImageList() {}

}  // namespace torvane
