#include "batch/batchsignin.h"

#include "batch/refusederror.h"
#include "db/recordset.h"
#include "runtime/runtimeerror.h"
#include "runtime/settings.h"
#include "runtime/vb.h"
#include "session/dbconnection.h"
#include "session/signin.h"

namespace quorvale {

namespace {

// The settings the program would read, with a message that says how to
// write them instead of the server error that empty settings end in.
void requireSettings()
{
    const QString problem = DatabaseSettings::readProblem();
    if (!problem.isEmpty())
        throw RuntimeError(ErrorNumber::FileNotFound,
                           QStringLiteral("the database settings cannot be read: %1").arg(problem));
    if (DatabaseSettings::read().server.isEmpty())
        throw RuntimeError(ErrorNumber::FileNotFound,
                           QStringLiteral("no database settings in %1; write them with: "
                                          "quorvale-admin config --server SERVER --login LOGIN "
                                          "--password PASSWORD --database DATABASE")
                               .arg(DatabaseSettings::location()));
}

} // namespace

SessionPtr signInForBatch(const QString &user, const QString &password, const QString &post)
{
    requireSettings();
    SignInRefusal refusal;
    if (!checkTypedCredentials(user, password, refusal))
        throw RefusedError(refusal.message);
    Session session;
    if (!ConnectDatabase(session))
        throw RuntimeError(ErrorNumber::DatabaseError, QStringLiteral("数据库连接失败!"));

    const SignInResult result = verifyCredentials(session, user, password);
    switch (result.kind) {
    case SignInResult::Kind::Refused:
        throw RefusedError(result.refusal.message);
    case SignInResult::Kind::SuperUser:
        break;
    case SignInResult::Kind::Posts: {
        QStringList offered;
        for (qsizetype i = 0; i < result.posts.size(); ++i) {
            const PostChoice &choice = result.posts.at(i);
            if (!post.isEmpty() && vbrt::Trim(choice.postCode) == post) {
                session.takePost(choice);
                break;
            }
            offered << QStringLiteral("%1 %2").arg(vbrt::Trim(choice.postCode),
                                                   result.listTexts.at(i));
        }
        if (post.isEmpty() && result.posts.size() == 1) {
            session.takePost(result.posts.first());
        } else if (session.CurPostCode.isEmpty()) {
            const QString lead =
                post.isEmpty()
                    ? QStringLiteral("user %1 holds several posts; name one with --post").arg(user)
                    : QStringLiteral("post %1 is not a current post of user %2").arg(post, user);
            throw RefusedError(lead + QStringLiteral(": ") + offered.join(QStringLiteral("; ")));
        }
        break;
    }
    }
    return signIn(std::move(session));
}

QList<OfficeItem> listedOffices(const Session &session, const ReportEntry &report)
{
    Recordset offices;
    offices.Open(officeStatement(report.definition.officeStyle, session.HasProjectAudit,
                                 session.CurDeptCode),
                 session.DbConn, 0, 1, -1);
    QList<OfficeItem> items;
    for (; !offices.eof(); offices.MoveNext())
        items << officeItemOf(offices);
    return items;
}

} // namespace quorvale
