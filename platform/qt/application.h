// The Qt application object that images, pages and windows need.
#pragma once

namespace zm::qt {

/// Makes sure that there is a Qt application object; one that the program made itself stays. Where no display can be
/// reached it runs on Qt's offscreen platform by itself, unless QT_QPA_PLATFORM says otherwise.
void EnsureApplication();

/// True if windows can be shown to somebody.
bool HasDisplay();

}  // namespace zm::qt
