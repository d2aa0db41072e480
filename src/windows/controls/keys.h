// Keys and what is held with them, by the numbers that Windows gives them.
#pragma once

namespace torvane {

/// The keys that the program knows; a letter's number is its capital.
enum KeyCode {
  kKeyEscape = 0x1B,
  kKeyDown = 0x28,
  kKeyDelete = 0x2E,
  kKeyF5 = 0x74,
};

/// What is held while a key goes down or a button is pressed, as bits.
constexpr int kShiftKey = 1;
constexpr int kControlKey = 2;
constexpr int kAltKey = 4;

}  // namespace torvane
