// A sound hive goes out as it came in; a change of one key leaves every other byte alone, and what
// was set is what is read. The input is the file behind one byte that says which key to change.
#include <algorithm>
#include <map>
#include <vector>

#include "check.h"
#include "platform/posix/registry/hive_image.h"
#include "scratch_prefix.h"

namespace torvane::fuzz {
namespace {

using Values = std::map<std::u16string, std::pair<DWORD, std::string>>;

const ScratchPrefix& Prefix() {
  static const ScratchPrefix prefix;
  return prefix;
}

posix::FileContent Content(std::string_view bytes) {
  posix::FileContent content;
  content.bytes = std::make_unique<char[]>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), content.bytes.get());
  content.size = bytes.size();
  content.stamp.size = static_cast<std::int64_t>(bytes.size());
  return content;
}

std::string Saved(const posix::HiveImage& image) {
  const auto file = Prefix().folder() / "user.reg";
  posix::FileReplacement replacement(file);
  image.write(image.render(0x1da0123456789abU), replacement);
  replacement.commit();
  return std::string(posix::ReadWholeFile(file).view());
}

std::u16string Folded(std::u16string text) {
  for (char16_t& unit : text) unit = posix::FoldCase(unit);
  return text;
}

/// A key's path as Wine means it: folded, without empty parts.
std::u16string MeantPath(std::u16string_view written) {
  std::u16string path;
  for (const char16_t unit : Folded(std::u16string(written)))
    if (unit != u'\\' || (!path.empty() && path.back() != u'\\')) path += unit;
  if (path.ends_with(u'\\')) path.pop_back();
  return path;
}

/// The file cut at its key lines: a piece's path and its bytes.
std::vector<std::pair<std::u16string, std::string>> Pieces(const std::string& bytes) {
  std::vector<std::pair<std::u16string, std::string>> pieces{{u"\n", {}}};
  posix::LineScanner scanner(bytes);
  posix::HiveLine line;
  while (scanner.next(line)) {
    if (line.kind == posix::HiveLine::Kind::Key)
      pieces.emplace_back(MeantPath(posix::DecodeText(line.name)), std::string());
    pieces.back().second += line.text;
  }
  return pieces;
}

Values ValuesOf(const posix::KeyValues& key) {
  Values values;
  for (std::size_t i = 0; i < key.count(); ++i) {
    const auto value = key.at(i);
    const auto data = posix::DecodeData(value->data);
    Check(posix::DataType(value->data) == data.type &&
              posix::DataSize(value->data) == data.bytes.size(),
          "type and size are told without making the bytes");
    const auto written = posix::WriteValueLine(value->decodedName(), data);
    const auto again = posix::DecodeData(written.data());
    Check(again.type == data.type && again.bytes == data.bytes &&
              posix::DecodeText(written.name()) == value->decodedName(),
          "what is written reads as it was read");
    values[Folded(value->decodedName())] = {data.type, data.bytes};
  }
  Check(values.size() == key.count(), "names are told apart without case");
  return values;
}

/// Replaces, adds and erases values of a key; gives what it must hold then.
Values Change(posix::KeyValues& key, unsigned choice) {
  Values values = ValuesOf(key);
  const posix::ValueData data{choice % 12, std::string("a\0\x07\xe9\0", 5).substr(0, choice % 6)};
  const std::u16string added = u"n\"\\[\u00e9\x01" + std::u16string(1, u'0');
  key.set(added, data);
  values[Folded(added)] = {data.type, data.bytes};
  if (const auto first = key.at(choice % key.count())) {
    const std::u16string name = first->decodedName();
    key.set(name, data);
    values[Folded(name)] = {data.type, data.bytes};
  }
  if (const auto last = key.at(key.count() - 1); last && choice % 2 == 0) {
    const std::u16string name = last->decodedName();
    Check(key.erase(name), "a value that stands there can be erased");
    values.erase(Folded(name));
  }
  return values;
}

void Run(std::string_view input) {
  const unsigned choice = input.size() < 2 ? 0 : static_cast<unsigned char>(input[0]);
  const std::string before(input.substr(std::min<std::size_t>(1, input.size())));
  posix::HiveImage image(Content(before), {});
  if (!image.problem().empty()) return;
  Check(Saved(image) == before, "load and save gives the same bytes");

  const auto pieces = Pieces(before);
  std::u16string path = u"New\\Key\u0131\"[]";
  if (pieces.size() > 1) path = pieces[1 + choice % (pieces.size() - 1)].first;
  posix::KeyValues& key = image.values(image.create(path));
  const Values expected = Change(key, choice);
  const std::string after = Saved(image);

  posix::HiveImage again(Content(after), {});
  Check(again.problem().empty(), "what was saved is sound");
  const auto found = again.find(path);
  Check(found.has_value(), "the changed key is there");
  Check(ValuesOf(again.values(*found)) == expected, "the key holds what was set");
  Check(Saved(again) == after, "load, save, load gives the same");

  // A new key comes behind everything else, a blank line before it.
  const std::u16string folded = Folded(path);
  const auto isIt = [&](const auto& piece) { return piece.first == folded; };
  if (std::none_of(pieces.begin(), pieces.end(), isIt)) {
    Check(after.starts_with(before), "a new key leaves the file as it is");
    return;
  }
  const auto others = [&](const std::string& bytes) {
    auto rest = Pieces(bytes);
    std::erase_if(rest, isIt);
    return rest;
  };
  Check(others(before) == others(after), "the other keys' bytes are as they were");
}

}  // namespace
}  // namespace torvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  torvane::fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
