// Which texts read as a number.
#pragma once

#include "storage/text.h"

namespace torvane {

/// Whether a text reads as a number by the rules that the folder lists were written under (Visual
/// Basic's IsNumeric in an English locale): blanks around, a sign or a currency sign before or
/// behind, parentheses for negative, thousands commas, a decimal point, an exponent with E or D,
/// &H and &O.
bool ReadsAsNumber(TextView text);

}  // namespace torvane
