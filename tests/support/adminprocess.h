#pragma once

#include <QString>
#include <QStringList>

class QProcess;

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

// Reads the running process's error output until it holds the text, which
// a test waits for instead of polling and guessing; false when the process
// ends or two minutes pass first. What was read is appended to `seen`.
bool waitForErrorText(QProcess &process, const QString &text, QString &seen);

} // namespace quorvale::testing
