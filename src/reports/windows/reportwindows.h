#pragma once

#include "session/session.h"

#include <QHash>
#include <QString>
#include <functional>

class QWidget;

namespace quorvale {

// The six report windows, made and loaded for a session, by the control
// name of the main window's menu item that opens each.
QHash<QString, std::function<QWidget *(const SessionPtr &session)>> reportWindowFactories();

} // namespace quorvale
