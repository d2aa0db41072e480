// The three forms differ in their parsers only: each tells a SettingsPlace where a collection
// begins and ends, what a key is and what a text, and that keeps the way there.
#include "platform/posix/prefix/settings_text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/posix/disk/atomic_file.h"
#include "platform/posix/text/code_page.h"

namespace torvane::posix {
namespace {

constexpr off_t kLargestFile = off_t{16} << 20;
/// A YAML file is read slowly; a manager's own are a few kilobytes.
constexpr off_t kLargestYaml = off_t{256} << 10;
constexpr std::size_t kDeepest = 64;

/// The file's bytes; none for what isn't a plain file of a bearable size.
std::string ReadSettings(const std::filesystem::path& path, off_t largest) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
      status.st_size > largest)
    return {};
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t done = 0;
  for (ssize_t count = 1; count > 0 && done < bytes.size(); done += static_cast<std::size_t>(count))
    count = std::max<ssize_t>(0, read(file.get(), bytes.data() + done, bytes.size() - done));
  bytes.resize(done);
  return bytes;
}

/// Where the parser stands in a file. Each call gives false where the reading is to end.
class SettingsPlace {
 public:
  explicit SettingsPlace(const TextVisitor& visitor) : visitor_(visitor) {}

  bool begin(bool isSequence) {
    if (collections_.size() >= kDeepest) return false;
    const bool isKey = collections_.empty() ? false : isAtKey();
    collections_.push_back({isSequence, isKey});
    if (isSequence) keys_.emplace_back("0");
    return true;
  }
  bool end() {
    if (collections_.empty()) return false;
    const Collection ended = collections_.back();
    collections_.pop_back();
    if (ended.isSequence) keys_.pop_back();
    // A key that is a collection stands for no text that anyone asks for.
    if (ended.isKey) return key({});
    return passed();
  }
  bool key(std::string text) {
    keys_.push_back(std::move(text));
    collections_.back().hasKey = true;
    return true;
  }
  bool text(const std::string& value) { return visitor_(keys_, value) && passed(); }
  /// A text, or in a map without a key so far the key.
  bool scalar(const std::string& value) { return isAtKey() ? key(value) : text(value); }
  bool isAtKey() const {
    return !collections_.empty() && !collections_.back().isSequence && !collections_.back().hasKey;
  }

 private:
  struct Collection {
    bool isSequence = false;
    bool isKey = false;
    bool hasKey = false;
    std::size_t items = 0;
  };

  /// A whole value has passed.
  bool passed() {
    if (collections_.empty()) return true;
    Collection& around = collections_.back();
    if (around.isSequence) {
      keys_.back() = std::to_string(++around.items);
    } else if (around.hasKey) {
      keys_.pop_back();
      around.hasKey = false;
    }
    return true;
  }

  const TextVisitor& visitor_;
  std::vector<std::string> keys_;
  std::vector<Collection> collections_;
};

struct EndOfReading {};

/// An alias is told as an empty text: nothing is unfolded.
class YamlEvents : public YAML::EventHandler {
 public:
  explicit YamlEvents(const TextVisitor& visitor) : place_(visitor) {}

  void OnDocumentStart(const YAML::Mark& /*mark*/) override {}
  void OnDocumentEnd() override {}
  void OnNull(const YAML::Mark& /*mark*/, YAML::anchor_t /*anchor*/) override {
    goOn(place_.scalar({}));
  }
  void OnAlias(const YAML::Mark& /*mark*/, YAML::anchor_t /*anchor*/) override {
    goOn(place_.scalar({}));
  }
  void OnScalar(const YAML::Mark& /*mark*/, const std::string& /*tag*/, YAML::anchor_t /*anchor*/,
                const std::string& value) override {
    goOn(place_.scalar(value));
  }
  void OnSequenceStart(const YAML::Mark& /*mark*/, const std::string& /*tag*/,
                       YAML::anchor_t /*anchor*/, YAML::EmitterStyle::value /*style*/) override {
    goOn(place_.begin(true));
  }
  void OnSequenceEnd() override { goOn(place_.end()); }
  void OnMapStart(const YAML::Mark& /*mark*/, const std::string& /*tag*/, YAML::anchor_t /*anchor*/,
                  YAML::EmitterStyle::value /*style*/) override {
    goOn(place_.begin(false));
  }
  void OnMapEnd() override { goOn(place_.end()); }

 private:
  static void goOn(bool more) {
    if (!more) throw EndOfReading();
  }
  SettingsPlace place_;
};

class JsonEvents : public nlohmann::json::json_sax_t {
 public:
  explicit JsonEvents(const TextVisitor& visitor) : place_(visitor) {}

  bool null() override { return place_.text({}); }
  bool boolean(bool value) override { return place_.text(value ? "true" : "false"); }
  bool number_integer(number_integer_t value) override {
    return place_.text(std::to_string(value));
  }
  bool number_unsigned(number_unsigned_t value) override {
    return place_.text(std::to_string(value));
  }
  bool number_float(number_float_t /*value*/, const string_t& digits) override {
    return place_.text(digits);
  }
  bool string(string_t& value) override { return place_.text(value); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*elements*/) override { return place_.begin(false); }
  bool key(string_t& value) override { return place_.key(value); }
  bool end_object() override { return place_.end(); }
  bool start_array(std::size_t /*elements*/) override { return place_.begin(true); }
  bool end_array() override { return place_.end(); }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::detail::exception& /*error*/) override {
    return false;
  }

 private:
  SettingsPlace place_;
};

/// Takes a VDF text apart: quoted texts with backslash escapes, bare words, braces, and comments to
/// the line's end.
class VdfTokens {
 public:
  explicit VdfTokens(std::string_view text) : rest_(text) {}

  enum class Kind { End, Text, Open, Close };
  Kind next(std::string& text) {
    skipBlanks();
    if (rest_.empty()) return Kind::End;
    const char first = rest_.front();
    if (first == '{' || first == '}') {
      rest_.remove_prefix(1);
      return first == '{' ? Kind::Open : Kind::Close;
    }
    text = first == '"' ? quoted() : bare();
    return Kind::Text;
  }

 private:
  void skipBlanks() {
    for (;;) {
      rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
      if (!rest_.starts_with("//")) return;
      rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size()));
    }
  }
  std::string bare() {
    const std::size_t length = std::min(rest_.find_first_of(" \t\r\n\"{}"), rest_.size());
    std::string text(rest_.substr(0, length));
    rest_.remove_prefix(length);
    return text;
  }
  std::string quoted() {
    std::string text;
    std::size_t at = 1;
    for (; at < rest_.size() && rest_[at] != '"'; ++at) {
      if (rest_[at] == '\\' && at + 1 < rest_.size()) ++at;
      text += rest_[at];
    }
    rest_.remove_prefix(std::min(at + 1, rest_.size()));
    return text;
  }

  std::string_view rest_;
};

std::string Lowered(std::string text) {
  std::ranges::transform(text, text.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return text;
}

bool IsShown(char16_t unit) {
  const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
  const bool turns = unit == 0x061C || (unit >= 0x200B && unit <= 0x200F) ||
                     (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2060 && unit <= 0x206F) ||
                     unit == 0xFEFF;
  return !control && !turns;
}

}  // namespace

void VisitYaml(const std::filesystem::path& file, const TextVisitor& visitor) {
  std::istringstream bytes(ReadSettings(file, kLargestYaml));
  YamlEvents events(visitor);
  try {
    YAML::Parser(bytes).HandleNextDocument(events);
  } catch (const EndOfReading&) {
    // The visitor has what it wants.
  } catch (const YAML::Exception&) {
    // What was sound has been told.
  }
}

void VisitJson(const std::filesystem::path& file, const TextVisitor& visitor) {
  JsonEvents events(visitor);
  nlohmann::json::sax_parse(ReadSettings(file, kLargestFile), &events);
}

void VisitVdf(const std::filesystem::path& file, const TextVisitor& visitor) {
  using Kind = VdfTokens::Kind;
  const std::string bytes = ReadSettings(file, kLargestFile);
  VdfTokens tokens(bytes);
  SettingsPlace place(visitor);
  std::string text;
  place.begin(false);
  for (Kind kind = tokens.next(text); kind != Kind::End; kind = tokens.next(text)) {
    const bool isKey = place.isAtKey();
    if ((kind == Kind::Open && isKey) || (kind == Kind::Close && !isKey)) return;
    const bool more = kind == Kind::Open    ? place.begin(false)
                      : kind == Kind::Close ? place.end()
                      : isKey               ? place.key(Lowered(text))
                                            : place.text(text);
    if (!more) return;
  }
}

std::string ShownName(const std::string& text) {
  constexpr std::size_t kMostRead = 4096;
  constexpr std::size_t kMostShown = 120;
  std::u16string shown;
  for (const char16_t unit : FromUtf8(std::string_view(text).substr(0, kMostRead)))
    if (IsShown(unit)) shown += unit;
  const std::size_t begin = shown.find_first_not_of(u' ');
  if (begin == shown.npos) return {};
  shown = shown.substr(begin, kMostShown);
  shown.erase(shown.find_last_not_of(u' ') + 1);
  // A pair isn't cut.
  if (shown.back() >= 0xD800 && shown.back() < 0xDC00) shown.pop_back();
  return ToUtf8(shown);
}

}  // namespace torvane::posix
