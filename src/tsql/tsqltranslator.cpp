// The public face of the translator: tokenizes a batch and runs its statements
// one at a time, dropping the cached schema after each one that changes it.
#include "tsql/tsqltranslator.h"

#include "tsql/tsqlcatalog.h"
#include "tsql/tsqlparser.h"
#include "tsql/tsqltokenizer.h"

namespace quorvale {

TsqlTranslator::TsqlTranslator(TsqlCatalog &catalog) : m_catalog(catalog) {}

void TsqlTranslator::translate(const QString &tsql,
                               const std::function<void(const TsqlStatement &)> &run)
{
    TsqlParser parser(m_catalog, TsqlTokenizer::tokenize(tsql));
    QList<TsqlStatement> statements;
    while (parser.next(statements)) {
        for (const TsqlStatement &st : std::as_const(statements)) {
            run(st);
            if (st.changesSchema)
                m_catalog.invalidate();
        }
        statements.clear();
    }
}

QList<TsqlStatement> TsqlTranslator::translate(const QString &tsql)
{
    QList<TsqlStatement> all;
    translate(tsql, [&](const TsqlStatement &st) { all.append(st); });
    return all;
}

} // namespace quorvale
