// The views of label, line, button, text box and frame.
#pragma once

#include "windows/controls/simple_controls.h"
#include "windows/win32/area.h"

namespace torvane {

/// A label that shows a hand is a link, reached by Tab and pressed by Space or Enter.
class Win32Label : public Win32View<ControlView, Label> {
 public:
  Win32Label(HWND form, Label& label);
  ~Win32Label() override;
  Win32Label(const Win32Label&) = delete;
  Win32Label& operator=(const Win32Label&) = delete;

  void setMousePointer(MousePointer pointer) override;
  void modelChanged() override;
  PixelSize naturalSize(int width) const override;
  void onCommand(UINT code) override;
  HBRUSH onColors(HDC dc) override;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR self);
  void press();
  void drawFocus();
};

class Win32Line : public Win32View<ControlView, Line>, public AreaEvents {
 public:
  Win32Line(HWND form, Line& line);

  void onPaint(HDC dc, int width, int height) override;
};

class Win32Button : public Win32View<ControlView, Button> {
 public:
  Win32Button(HWND form, Button& button);

  void modelChanged() override;
  PixelSize naturalSize(int width) const override;
  void onCommand(UINT code) override;
};

class Win32TextBox : public Win32View<ControlView, TextBox> {
 public:
  Win32TextBox(HWND form, TextBox& box);

  void modelChanged() override;
  PixelSize naturalSize(int width) const override;
  void onRescaled(double factor) override;
  HBRUSH onColors(HDC dc) override;

 private:
  void setMargins();
};

class Win32Frame : public Win32View<ControlView, Frame>, public AreaEvents {
 public:
  Win32Frame(HWND form, Frame& frame);

  void setVisible(bool visible) override;
  void onPaint(HDC dc, int width, int height) override;
  std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void onPosted(LPARAM position) override;

 private:
  using MouseEvent = Event<int, int, float, float>;

  void press(int button, WPARAM state, LPARAM position);
  void release(int button, WPARAM state, LPARAM position);
  void fire(const MouseEvent& event, int button, WPARAM state, LPARAM position);

  /// The buttons that went down here and are still down.
  int pressed_ = 0;
  /// The same, put by while the frame is hidden.
  int hiddenWhilePressed_ = 0;
};

}  // namespace torvane
