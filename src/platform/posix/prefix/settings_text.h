// The settings of other programs, read for a few of their texts. Whatever a file holds, reading it
// takes little time and little memory: it is a plain file of a bounded size, its nesting is
// bounded, and what is wrong with it ends the reading where it stands.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>

namespace torvane::posix {

/// Told of each text in a file: the keys that lead to it, an item of a sequence under its number
/// ("games", "12", "title"), and the text itself. Gives false to be told no more.
using TextVisitor = std::function<bool(std::span<const std::string> keys, const std::string& text)>;

/// Each reads a file of one form, to its end or as far as it is sound. One that isn't there is
/// empty.
void VisitYaml(const std::filesystem::path& file, const TextVisitor& visitor);
void VisitJson(const std::filesystem::path& file, const TextVisitor& visitor);
/// Valve's text form. Its keys, which are without case, come in lower case.
void VisitVdf(const std::filesystem::path& file, const TextVisitor& visitor);

/// A text as it can be shown in one line: well-formed, without control characters and those that
/// turn the direction of writing, of at most 120 characters, no blanks around.
std::string ShownName(const std::string& text);

}  // namespace torvane::posix
