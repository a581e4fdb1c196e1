#pragma once

class QWidget;

namespace quorvale {

// Chains the controls under `root` that take focus from the Tab key in the
// order they are laid out: a layout's items in its order (a grid's row by
// row), widgets placed by hand top to bottom, then left to right. Call it
// once the window has its geometry (when it is first shown).
void setTabOrderAsLaidOut(QWidget *root);

// Enter on a focused button under `root` presses it, as in a dialog.
void enterPressesButtons(QWidget *root);

} // namespace quorvale
