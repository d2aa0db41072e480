// A profile file goes out as it came in; a change leaves every other line alone, and what was set
// is what is read. The input is the file behind one byte that says what to change.
#include <string>
#include <vector>

#include "check.h"
#include "platform/posix/profile/profile_text.h"
#include "scratch_prefix.h"

namespace torvane::fuzz {
namespace {

bool IsWide(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

/// The units of a file: two bytes each of a wide one, by its mark, where an odd byte behind the
/// last stands for itself, else one.
std::u16string UnitsOf(std::string_view bytes) {
  const std::size_t width = IsWide(bytes) ? 2 : 1;
  const bool isBig = bytes.starts_with("\xFE\xFF");
  std::u16string units;
  for (std::size_t i = 0; i < bytes.size(); i += width) {
    unsigned unit = static_cast<unsigned char>(bytes[i]);
    if (width == 2 && i + 1 < bytes.size()) {
      const unsigned other = static_cast<unsigned char>(bytes[i + 1]);
      unit = isBig ? (unit << 8U) | other : unit | (other << 8U);
    }
    units += static_cast<char16_t>(unit);
  }
  return units;
}

/// How much of two texts is the same from the front on and from the back.
struct Difference {
  Difference(std::u16string_view left, std::u16string_view right) {
    const std::size_t most = std::min(left.size(), right.size());
    while (front < most && left[front] == right[front]) ++front;
    while (back < most - front && left[left.size() - 1 - back] == right[right.size() - 1 - back])
      ++back;
    before = left.substr(front, left.size() - front - back);
    after = right.substr(front, right.size() - front - back);
  }
  std::size_t front = 0;
  std::size_t back = 0;
  std::u16string_view before;
  std::u16string_view after;
};

/// Lines that have begun and ended in a text; line ends of two bytes count as one.
std::size_t LineEnds(std::u16string_view text) {
  std::size_t ends = 0;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (text[i] == u'\n' || (text[i] == u'\r' && text.substr(i + 1, 1) != u"\n")) ++ends;
  return ends;
}

/// Every value of a file, in order.
std::vector<std::u16string> AllValues(const posix::ProfileText& text) {
  std::vector<std::u16string> all;
  for (const auto& section : text.sections())
    for (const auto& key : text.keys(section).value_or(std::vector<std::u16string>()))
      all.push_back(std::u16string(section).append(u"\n").append(key).append(u"\n").append(
          text.value(section, key).value_or(u"\n")));
  return all;
}

struct Target {
  std::u16string section = u"Section";
  std::u16string key = u"Key";
};

/// A key of the file, or where the choice says so a new one.
Target Choose(const posix::ProfileText& text, unsigned choice) {
  Target target;
  const auto sections = text.sections();
  if (sections.empty() || choice % 5 == 0) return target;
  target.section = sections[choice % sections.size()];
  const auto keys = text.keys(target.section).value_or(std::vector<std::u16string>());
  if (!keys.empty() && choice % 3 != 0) target.key = keys[choice % keys.size()];
  return target;
}

void CheckSet(const std::string& before, const Target& target) {
  const std::u16string value = u"C:\\a b\\c.txt";
  posix::ProfileText text(before);
  text.set(target.section, target.key, value);
  const std::string after = text.bytes();
  const posix::ProfileText again(after);
  Check(again.bytes() == after, "load, save, load gives the same");
  Check(again.value(target.section, target.key) == value, "what was set is read");
  Check(AllValues(again) == AllValues(text), "the file says what the text in memory says");
  const std::u16string old = UnitsOf(before);
  const std::u16string now = UnitsOf(after);
  const Difference difference(old, now);
  Check(LineEnds(difference.before) <= 1, "one line at most is replaced");
  // The file's last line may lack its end; a section line and the key's line may come behind it.
  Check(LineEnds(difference.after) <= 4, "no more than the key's lines come");
}

void CheckRemoval(const std::string& before, const Target& target) {
  posix::ProfileText text(before);
  const bool wasThere = text.contains(target.section, target.key);
  text.removeKey(target.section, target.key);
  const std::string after = text.bytes();
  Check(wasThere || after == before, "what isn't there can be removed without a trace");
  Check(!wasThere || after.size() < before.size(), "removing takes a line away");
  Check(AllValues(posix::ProfileText(after)) == AllValues(text),
        "the file says what the text in memory says");
  const std::u16string old = UnitsOf(before);
  const std::u16string now = UnitsOf(after);
  const Difference difference(old, now);
  Check(difference.after.empty(), "removing adds nothing");
  Check(LineEnds(difference.before) <= 2, "one line is removed");

  posix::ProfileText whole(before);
  whole.removeSection(target.section);
  Check(AllValues(posix::ProfileText(whole.bytes())) == AllValues(whole),
        "a file without the section says what the text in memory says");
}

void Run(std::string_view input) {
  const unsigned choice = input.empty() ? 0 : static_cast<unsigned char>(input[0]);
  const std::string before(input.substr(std::min<std::size_t>(1, input.size())));
  const posix::ProfileText text(before);
  Check(text.bytes() == before, "load and save gives the same bytes");
  const Target target = Choose(text, choice);
  CheckSet(before, target);
  CheckRemoval(before, target);
}

}  // namespace
}  // namespace torvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static const torvane::fuzz::ScratchPrefix prefix;
  torvane::fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
