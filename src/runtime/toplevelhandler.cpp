#include "runtime/toplevelhandler.h"


#include <cstdio>
#include <cstdlib>
#include <exception>

namespace quorvale {

namespace {
EndProgramHook &endHook()
{
    static EndProgramHook hook;
    return hook;
}

UnhandledErrorBox &errorBox()
{
    static UnhandledErrorBox box;
    return box;
}

// The classic runtime's number for a failure it cannot name better.
constexpr int InternalError = 51;
} // namespace

QString runtimeErrorText(int number, const QString &description)
{
    return QStringLiteral("实时错误 '") + QString::number(number) + QStringLiteral("':\n\n") +
           description;
}

void reportUnhandledError(const RuntimeError &error)
{
    const QString text = runtimeErrorText(error.number(), error.description());
    if (errorBox())
        errorBox()(text);
    else
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    endProgram(1);
}

void reportCurrentException()
{
    try {
        throw;
    } catch (const RuntimeError &e) {
        reportUnhandledError(e);
    } catch (const std::exception &e) {
        reportUnhandledError(RuntimeError(InternalError, QString::fromLocal8Bit(e.what())));
    } catch (...) {
        reportUnhandledError(RuntimeError(InternalError, QStringLiteral("内部错误")));
    }
}

bool runGuarded(const std::function<void()> &code)
{
    try {
        code();
        return true;
    } catch (...) {
        reportCurrentException();
    }
    return false;
}

void setUnhandledErrorBox(UnhandledErrorBox box)
{
    errorBox() = std::move(box);
}

void endProgramNow(int status)
{
    std::fflush(nullptr);
    std::_Exit(status);
}

void endProgram(int status)
{
    if (endHook()) {
        endHook()(status);
        return;
    }
    endProgramNow(status);
}

void setEndProgramHook(EndProgramHook hook)
{
    endHook() = std::move(hook);
}

} // namespace quorvale
