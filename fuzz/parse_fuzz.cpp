// The elements of a text and the separators between them are the text. The input is three
// characters of a separator set, and the text.
#include <cstdint>

#include "check.h"
#include "storage/clsParse.h"

namespace torvane::fuzz {
namespace {

void Run(std::string_view input) {
  const std::size_t setSize = std::min<std::size_t>(3, input.size());
  const Text separators(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(setSize));
  const Text source(input.begin() + static_cast<std::ptrdiff_t>(setSize), input.end());
  clsParse parser;
  const std::int32_t count = parser.Initialise(source, separators);
  Check(parser.ElementAsString(0).empty(), "there is no element 0");
  Check(parser.ElementAsString(INT32_MIN).empty(), "nor one below");
  Check(parser.ElementAsString(INT32_MAX).empty(), "nor one above the last");
  if (count == 0) return;
  Check(parser.ElementAsString(count + 1).empty(), "nor one behind the last");
  std::size_t at = 0;
  for (std::int32_t n = 1; n <= count; ++n) {
    const Text element = parser.ElementAsString(n);
    Check(source.compare(at, element.size(), element) == 0, "an element is a piece of the text");
    at += element.size();
    if (n == count) break;
    Check(at < source.size() && separators.find(source[at]) != Text::npos,
          "a separator ends an element");
    ++at;
  }
  Check(at == source.size(), "the last element reaches to the end");
  Check(parser.Initialise(Text(), separators) == 1 && parser.ElementAsString(2).empty(),
        "nothing of a former text is left");
}

}  // namespace
}  // namespace torvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  torvane::fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
