#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace quorvale::testing {

// The open top-level window of a type (the login, the main window), once the
// windows that went have gone; nullptr when there is none.
template <typename Window> Window *topLevelWindow()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *window = qobject_cast<Window *>(widget))
            return window;
    return nullptr;
}

} // namespace quorvale::testing
