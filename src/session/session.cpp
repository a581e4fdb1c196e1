#include "session/session.h"

#include "runtime/runtimeerror.h"
#include "runtime/settings.h"
#include "runtime/vb.h"

namespace quorvale {

QString &Session::value(int index)
{
    QString *const values[ValueCount] = {
        &CurUserNo,   &CurUserName,      &CurDeptCode,      &CurDeptName,      &CurPostCode,
        &CurPostName, &CurDeptClassCode, &CurDeptClassName, &CurPostClassCode, &CurPostClassName};
    return *values[index];
}

Session Session::fromCommandLine(const QString &startupArgs)
{
    Session session;
    const QStringList fields = startupArgs.split(QLatin1Char(','));
    for (int i = 0; i < ValueCount; ++i) {
        if (i >= fields.size())
            throw RuntimeError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("下标越界"));
        session.value(i) = fields.at(i);
    }
    return session;
}

void Session::takePost(const PostChoice &choice)
{
    const QString *chosen[ValueCount] = {
        &choice.userNo,        &choice.userName,      &choice.deptCode,      &choice.deptName,
        &choice.postCode,      &choice.postName,      &choice.deptClassCode, &choice.deptClassName,
        &choice.postClassCode, &choice.postClassName};
    for (int i = 0; i < ValueCount; ++i)
        value(i) = vbrt::Trim(*chosen[i]);
}

void Session::clearForSignIn()
{
    for (int i = 0; i < ValueCount; ++i)
        if (&value(i) != &CurUserName)
            value(i).clear();
}

QString commandLineText(const QStringList &arguments)
{
    return arguments.mid(1).join(QLatin1Char(' '));
}

QString sessionCommandLine(const QStringList &arguments)
{
    if (!DatabaseSettings::allowsCommandLineSession())
        return {};
    return commandLineText(arguments);
}

} // namespace quorvale
