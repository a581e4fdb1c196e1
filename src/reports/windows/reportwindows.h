#pragma once

#include "session/session.h"
#include "ui/desktop.h"

#include <QHash>
#include <QString>
#include <functional>

class QWidget;

namespace quorvale {

// The six report windows, made and loaded for a session and its desktop, by the control
// name of the main window's menu item that opens each.
QHash<QString, std::function<QWidget *(const SessionPtr &session, const DesktopPtr &desktop)>>
reportWindowFactories();

} // namespace quorvale
