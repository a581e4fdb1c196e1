#pragma once

#include <QString>
#include <QStringList>

namespace quorvale::testing {

// What one run of a built program printed and returned.
struct ProcessRun {
    int status = -1; // -1 when it crashed or did not finish
    QString out;
    QString err;
};

// A program of the build (e.g. "quorvale-admin"): ctest names the build
// folder; a test run by hand finds it beside its own folder.
QString builtProgram(const QString &name);

// Runs quorvale-admin with the arguments and waits for it.
ProcessRun runAdmin(const QStringList &arguments);

} // namespace quorvale::testing
