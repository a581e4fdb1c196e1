// What every part of the parser shares: reserved words, value kinds, how names
// and strings are written for SQLite, and which statement comes next.
#include "tsql/tsqlparser.h"

#include "tsql/sqlliteral.h"
#include "tsql/tsqlcatalog.h"
#include "tsql/tsqltranslator.h"

#include <QSet>

namespace quorvale {

namespace {

// Words that end an expression or a table source, so they are never taken
// for an alias.
const QSet<QString> &reservedWords()
{
    static const QSet<QString> words = [] {
        QSet<QString> w;
        for (const char *s :
             {"SELECT",   "FROM",       "WHERE",  "ORDER",    "GROUP",   "HAVING",  "BY",
              "INNER",    "LEFT",       "RIGHT",  "FULL",     "OUTER",   "CROSS",   "JOIN",
              "ON",       "AND",        "OR",     "NOT",      "IN",      "IS",      "NULL",
              "LIKE",     "BETWEEN",    "CASE",   "WHEN",     "THEN",    "ELSE",    "END",
              "AS",       "ASC",        "DESC",   "DISTINCT", "TOP",     "UNION",   "ALL",
              "INTO",     "VALUES",     "SET",    "UPDATE",   "DELETE",  "INSERT",  "CREATE",
              "DROP",     "TABLE",      "INDEX",  "UNIQUE",   "PRIMARY", "KEY",     "DEFAULT",
              "IDENTITY", "CONSTRAINT", "EXISTS", "COLLATE",  "WITH",    "EXCEPT",  "INTERSECT",
              "GO",       "USE",        "ALTER",  "EXEC",     "EXECUTE", "FOREIGN", "REFERENCES",
              "CHECK"})
            w.insert(QString::fromLatin1(s));
        return w;
    }();
    return words;
}

} // namespace

TsqlParser::Kind TsqlParser::kindOf(FieldKind k)
{
    switch (k) {
    case FieldKind::Text:
        return Kind::Text;
    case FieldKind::Number:
        return Kind::Number;
    case FieldKind::DateTime:
        return Kind::DateTime;
    case FieldKind::Bit:
        return Kind::Bit;
    }
    return Kind::Unknown;
}

FieldKind TsqlParser::fieldKindOf(Kind k)
{
    switch (k) {
    case Kind::Number:
        return FieldKind::Number;
    case Kind::DateTime:
        return FieldKind::DateTime;
    case Kind::Bit:
        return FieldKind::Bit;
    default:
        return FieldKind::Text;
    }
}

bool TsqlParser::isNumeric(Kind k)
{
    return k == Kind::Number || k == Kind::Bit;
}

QString TsqlParser::quoteName(const QString &name)
{
    QString q = name;
    q.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + q + QLatin1Char('"');
}

QString TsqlParser::quoteString(const QString &value)
{
    return QLatin1Char('\'') + sqlQuoted(value) + QLatin1Char('\'');
}

QString TsqlParser::collate()
{
    return QStringLiteral(" COLLATE ") + QLatin1String(tsqlCollation);
}

bool TsqlParser::isReserved(const TsqlToken &t)
{
    return t.kind == TsqlToken::Kind::Identifier && reservedWords().contains(t.text.toUpper());
}

const TsqlTable *TsqlParser::tableNamed(const QString &n, const TsqlToken &at)
{
    const TsqlTable *table = m_catalog.table(n);
    if (!table)
        error(QStringLiteral("Invalid object name '%1'").arg(n), at);
    return table;
}

void TsqlParser::statement(QList<TsqlStatement> &out)
{
    const TsqlToken &t = peek();
    if (t.isKeyword("SELECT")) {
        out.append(select());
    } else if (t.isKeyword("INSERT")) {
        out.append(insert());
        out.last().changesRows = true;
    } else if (t.isKeyword("UPDATE")) {
        out.append(update());
        out.last().changesRows = true;
    } else if (t.isKeyword("DELETE")) {
        out.append(deleteStatement());
        out.last().changesRows = true;
    } else if (t.isKeyword("CREATE")) {
        create(out);
    } else if (t.isKeyword("DROP")) {
        out.append(drop());
    } else if (t.isKeyword("SET")) {
        take();
        name();
        if (!acceptKw("ON") && !acceptKw("OFF"))
            syntaxError(peek());
        out.append(TsqlStatement{});
    } else {
        syntaxError(t);
    }
}

bool TsqlParser::startsStatement(const TsqlToken &t)
{
    for (const char *w : {"SELECT", "INSERT", "UPDATE", "DELETE", "CREATE", "DROP", "SET"})
        if (t.isKeyword(w))
            return true;
    return false;
}

} // namespace quorvale
