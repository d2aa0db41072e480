// What assistive technology is told of the widgets that Qt knows only as widgets.
#pragma once

namespace torvane {

/// From now on our widgets have the roles that they play: window, link, status bar and so on.
void NameAccessibleRoles();

}  // namespace torvane
