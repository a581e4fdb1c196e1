#pragma once

class QWidget;

namespace quorvale {

// Places a window in the middle of the main window's client area: the main
// window it belongs to (its parent, or the window holding its MDI frame).
// A window without one stays where it is.
void CenterInMain(QWidget *window);

} // namespace quorvale
