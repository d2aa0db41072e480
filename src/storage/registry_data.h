// The data of a registry value: what reading makes of its type and bytes, and what a text is stored
// as.
#pragma once

#include <cstdint>

#include "storage/text.h"
#include "storage/variant.h"

namespace torvane {

/// 16-bit text as bytes, and back; an odd byte at the end is no text.
Bytes BytesOfText(TextView text);
Text TextOfBytes(const Bytes& bytes);

/// A number as a value of a number type holds it.
Bytes BytesOfNumber(std::int32_t number);

/// What data without a spare byte reads as: text for the text types, without the NUL that closes it
/// and with references to the environment expanded in type 2; a number for the two number types, 0
/// for more than four bytes; else the bytes with a spare one behind them. A text of no bytes is
/// nothing.
Variant ReadData(std::int32_t type, const Bytes& bytes);

/// The type that a text is stored as: 2 where it refers to the environment, having a percent sign
/// and another one with something between; else 1.
std::int32_t TypeForText(TextView text);

}  // namespace torvane
