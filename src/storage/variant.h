// A value of the registry as the program passes it around: nothing, text, a number or bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

#include "storage/text.h"

namespace torvane {

/// Bytes come with a spare last byte behind the stored data (see clsRegistry).
using Bytes = std::vector<std::byte>;
using Variant = std::variant<std::monostate, Text, std::int16_t, std::int32_t, Bytes>;

/// The value where text is wanted: nothing is empty, a number its decimal text, bytes the text in
/// the ANSI code page ahead of their first NUL.
Text AsText(const Variant& value);
/// The value where a number is wanted: nothing and text that reads as no number are 0.
std::int32_t AsInteger(const Variant& value);
/// The number of characters of AsText().
std::int32_t Length(const Variant& value);

/// Whether the value is a number or a text that reads as one: blanks around, a sign before or
/// behind, thousands commas, a decimal point, an exponent with E or D, a currency sign, parentheses
/// for negative, &H and &O. Nothing at all reads as the number 0; bytes are no number.
bool IsNumeric(const Variant& value);

}  // namespace torvane
