// A toolkit without windows: models work without views, and what the user would see is written
// down.
#pragma once

#include <deque>
#include <functional>
#include <utility>
#include <vector>

#include "windows/controls/toolkit.h"

namespace torvane::testing {

/// A message box as it was shown.
struct ShownMessage {
  Text text;
  UINT style = 0;
  Text title;
};

/// A popup as it was shown: captions of the visible items, disabled ones in brackets, the default
/// one with a star.
using ShownPopup = std::vector<Text>;

/// Puts itself in place for its lifetime. Message boxes answer IDOK.
class RecordingToolkit : public Toolkit {
 public:
  /// `next` is in place again afterwards.
  explicit RecordingToolkit(Toolkit* next = nullptr) : next_(next) { SetToolkit(this); }
  RecordingToolkit(const RecordingToolkit&) = delete;
  RecordingToolkit& operator=(const RecordingToolkit&) = delete;
  ~RecordingToolkit() override { SetToolkit(next_); }

  std::vector<ShownMessage> messages;
  std::vector<Text> errors;
  std::vector<Text> folderTitles;
  std::vector<ShownPopup> popups;
  std::vector<POINT> popupPlaces;
  Text clipboard;
  /// What the next folder dialogues answer; cancel when used up.
  std::deque<Text> folders;
  /// Runs while such a dialogue is open.
  std::function<void()> asked;
  /// What the next DoEvents lets run.
  std::function<void()> events;

  bool Start() override { return true; }
  void MakeViews(Form& /*form*/) override {}
  void DropViews(Form& /*form*/) override {}
  bool Run() override { return false; }
  void DoEvents() override {
    if (events) std::exchange(events, nullptr)();
  }
  void WhenIdle(std::function<void()> work) override { work(); }
  Text WorldName() const override { return {}; }
  int ShowMessage(const Text& text, UINT style, const Text& title) override {
    messages.push_back({text, style, title});
    return IDOK;
  }
  void ReportError(const Text& description) override { errors.push_back(description); }
  void ShowPopup(Form& /*owner*/, MenuItem& menu, const MenuItem* defaultItem,
                 POINT screen) override {
    popupPlaces.push_back(screen);
    ShownPopup shown;
    for (const MenuItem& item : menu.Items()) {
      if (!item.Visible) continue;
      const Text caption = item.Enabled ? item.Caption : u"(" + item.Caption + u")";
      shown.push_back(&item == defaultItem ? u"*" + caption : caption);
    }
    popups.push_back(shown);
  }
  void CopyText(const Text& text) override { clipboard = text; }
  Text BrowseFolder(Form& /*owner*/, const Text& title) override {
    folderTitles.push_back(title);
    if (asked) asked();
    if (folders.empty()) return {};
    Text chosen = folders.front();
    folders.pop_front();
    return chosen;
  }
  Scale ScreenScale() const override { return {}; }

 private:
  Toolkit* next_;
};

}  // namespace torvane::testing
