// Whether the texts of a form have the room that they need.
#pragma once

#include <gtest/gtest.h>

#include "support/printing.h"
#include "windows/controls/form.h"

namespace torvane::testing {

/// Each visible control with a text shows it whole, inside the form and over no other such control.
inline void ExpectRoomForTexts(const Form& form) {
  std::vector<const Control*> texts;
  for (const Control* control : form.Controls()) {
    const PixelRect place = control->Bounds();
    const PixelSize natural = control->NaturalSize(place.width);
    if (!control->Visible() || natural.height == 0) continue;
    EXPECT_GE(place.width, natural.width) << control->Name();
    EXPECT_GE(place.height, natural.height) << control->Name();
    EXPECT_LE(place.right(), form.ScaleWidth()) << control->Name();
    EXPECT_LE(place.bottom(), form.ScaleHeight()) << control->Name();
    for (const Control* other : texts) {
      const PixelRect taken = other->Bounds();
      const bool apart = taken.right() <= place.left || place.right() <= taken.left ||
                         taken.bottom() <= place.top || place.bottom() <= taken.top;
      EXPECT_TRUE(apart) << control->Name() << " over " << other->Name();
    }
    texts.push_back(control);
  }
  EXPECT_GE(texts.size(), 10U);
}

}  // namespace torvane::testing
