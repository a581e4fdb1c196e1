#pragma once

#include <QApplication>

namespace quorvale {

// The hourglass for as long as a step keeps the window from answering.
class WaitPointer {
  public:
    WaitPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitPointer() { QApplication::restoreOverrideCursor(); }
    WaitPointer(const WaitPointer &) = delete;
    WaitPointer &operator=(const WaitPointer &) = delete;
};

} // namespace quorvale
