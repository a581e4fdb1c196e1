#include "runtime/toplevelhandler.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace quorvale {

namespace {
// The classic runtime's number for a failure it cannot name better.
constexpr int InternalError = 51;
} // namespace

QString runtimeErrorText(int number, const QString &description)
{
    return QStringLiteral("实时错误 '") + QString::number(number) + QStringLiteral("':\n\n") +
           description;
}

void reportUnhandledError(const RuntimeError &error, const UnhandledErrors &handler)
{
    const QString text = runtimeErrorText(error.number(), error.description());
    if (handler.show)
        handler.show(text);
    else
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    if (handler.end)
        handler.end(1);
    else
        endProgramNow(1);
}

void reportCurrentException(const UnhandledErrors &handler)
{
    try {
        throw;
    } catch (const RuntimeError &e) {
        reportUnhandledError(e, handler);
    } catch (const std::exception &e) {
        reportUnhandledError(RuntimeError(InternalError, QString::fromLocal8Bit(e.what())),
                             handler);
    } catch (...) {
        reportUnhandledError(RuntimeError(InternalError, QStringLiteral("内部错误")), handler);
    }
}

bool runGuarded(const std::function<void()> &code, const UnhandledErrors &handler)
{
    try {
        code();
        return true;
    } catch (...) {
        reportCurrentException(handler);
    }
    return false;
}

void endProgramNow(int status)
{
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace quorvale
