// Two controls side by side with a bar between them that can be dragged; the split keeps its
// proportion when the form is resized.
#pragma once

#include <cstdint>

#include "windows/controls/form.h"

namespace torvane {

/// A vertical splitter. Positions are pixels in the client area of the form; only the mouse events
/// of the bar come in twips.
class cVSplitter {
 public:
  /// Takes a form, its left and right control and the bar, and follows the form's resize and keys
  /// and the bar's mouse from then on; all must outlive the splitter. False, with a message, where
  /// a control has no window.
  bool SetControls(Form& frm, Control& c1, Control& c2, Frame& fra);

  /// The bar's left edge.
  std::int32_t Left() const { return splitPosition_; }
  /// Moves the bar and lays out; a negative position is ignored.
  void Left(std::int32_t x);
  /// Whether the panes follow the mouse during a drag; else a ghost of the bar does.
  void TrackSplit(bool fTrackSplit) { fTrackSplit_ = fTrackSplit; }
  bool Dragging() const { return screen_ != nullptr; }
  /// Ends a drag as if it hadn't been.
  void CancelSplit();
  /// Takes the measures of the scale that the form has now, and lays out anew.
  void Rescale();

  void fraSplit_MouseDown(int Button, int Shift, float x, float y);
  void fraSplit_MouseMove(int Button, int Shift, float x, float y);
  void fraSplit_MouseUp(int Button, int Shift, float x, float y);
  void frmParent_Resize();
  void frmParent_KeyPress(int& KeyAscii);

 private:
  static bool HasWindowHandle(const Control& control);
  void ReadMetrics();
  void EndDrag(float x);
  void ReleaseScreen();
  void InvertBar() const;
  void LayoutPanes();
  void MovePanes();
  void MoveLeftPane() const;
  void MoveRightPane() const;
  void MoveBar() const;
  std::int32_t WantedPosition(float x) const;
  std::int32_t Clip(std::int32_t position) const;
  std::int32_t PaneHeight() const { return bottom_ - top_; }

  std::int32_t minPaneWidth_ = 0;
  std::int32_t edgeOverlap_ = 0;  ///< both controls reach this far under the bar
  std::int32_t barWidth_ = 0;
  std::int32_t splitPosition_ = 0;
  std::int32_t top_ = 0;
  std::int32_t clientWidth_ = 0;
  std::int32_t bottom_ = 0;
  std::int32_t referenceWidth_ = 0;  ///< the client width that the ratio is measured against
  float ratio_ = 0;                  ///< 0: to be worked out anew
  bool fTrackSplit_ = false;
  std::int32_t dragStart_ = 0;
  HDC screen_ = nullptr;  ///< there while a drag runs
  Control* leftPane_ = nullptr;
  Control* rightPane_ = nullptr;
  Form* frmParent_ = nullptr;
  Frame* fraSplit_ = nullptr;
  std::int32_t lastPosition_ = 0;
};

}  // namespace torvane
