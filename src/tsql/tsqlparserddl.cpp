// CREATE TABLE / INDEX and DROP TABLE / INDEX: SQL Server's column types, keys
// and identities written as the SQLite schema that behaves the same.
#include "tsql/tsqlparser.h"

#include "tsql/tsqlcatalog.h"

#include <QSet>

namespace quorvale {

TsqlStatement TsqlParser::drop()
{
    expectKw("DROP");
    TsqlStatement st;
    st.changesSchema = true;
    if (acceptKw("TABLE")) {
        const bool ifExists = acceptKw("IF") && (expectKw("EXISTS"), true);
        QStringList sql;
        do {
            sql << QStringLiteral("DROP TABLE ") +
                       (ifExists ? QStringLiteral("IF EXISTS ") : QString()) +
                       quoteName(objectName());
        } while (acceptSym(","));
        if (sql.size() > 1)
            syntaxError(peek());
        st.sql = sql.first();
        return st;
    }
    if (acceptKw("INDEX")) {
        const bool ifExists = acceptKw("IF") && (expectKw("EXISTS"), true);
        QString index = name();
        QString table;
        if (acceptSym(".")) {
            table = index;
            index = name();
        } else {
            expectKw("ON");
            table = objectName();
        }
        st.sql = QStringLiteral("DROP INDEX ") +
                 (ifExists ? QStringLiteral("IF EXISTS ") : QString()) +
                 quoteName(indexName(table, index));
        return st;
    }
    syntaxError(peek());
}

// SQL Server names indexes per table, SQLite per database.
QString TsqlParser::indexName(const QString &table, const QString &index)
{
    return table + QLatin1Char('$') + index;
}

void TsqlParser::create(QList<TsqlStatement> &out)
{
    expectKw("CREATE");
    const bool unique = acceptKw("UNIQUE");
    if (!acceptKw("CLUSTERED"))
        acceptKw("NONCLUSTERED");
    if (acceptKw("INDEX")) {
        const QString index = name();
        expectKw("ON");
        const TsqlToken at = peek();
        const TsqlTable *table = tableNamed(objectName(), at);
        expectSym("(");
        QStringList cols;
        do {
            const TsqlToken ct = peek();
            const QString c = name();
            const int i = table->indexOf(c);
            if (i < 0)
                error(QStringLiteral("Column name '%1' does not exist in the target table").arg(c),
                      ct);
            QString col = quoteName(table->columns.at(i).name);
            if (acceptKw("DESC"))
                col += QLatin1String(" DESC");
            else
                acceptKw("ASC");
            cols << col;
        } while (acceptSym(","));
        expectSym(")");
        skipStorageClause();
        TsqlStatement st;
        st.changesSchema = true;
        st.sql = QStringLiteral("CREATE %1INDEX %2 ON %3 (%4)")
                     .arg(unique ? QStringLiteral("UNIQUE ") : QString(),
                          quoteName(indexName(table->name, index)), quoteName(table->name),
                          cols.join(QLatin1String(", ")));
        out.append(st);
        return;
    }
    if (unique)
        syntaxError(peek());
    expectKw("TABLE");
    createTable(out);
}

void TsqlParser::skipStorageClause()
{
    if (acceptKw("ON")) {
        if (!acceptKw("PRIMARY"))
            name();
    }
    if (acceptKw("TEXTIMAGE_ON")) {
        if (!acceptKw("PRIMARY"))
            name();
    }
}

void TsqlParser::createTable(QList<TsqlStatement> &out)
{
    const TsqlToken at = peek();
    const QString table = objectName();
    if (m_catalog.table(table))
        error(QStringLiteral("There is already an object named '%1' in the database").arg(table),
              at);
    expectSym("(");
    QList<ColumnDef> cols;
    QStringList tableKey;
    QList<QStringList> uniques;
    do {
        if (peek().isKeyword("CONSTRAINT") || peek().isKeyword("PRIMARY") ||
            peek().isKeyword("UNIQUE")) {
            if (acceptKw("CONSTRAINT"))
                name();
            const bool pk = acceptKw("PRIMARY");
            if (pk)
                expectKw("KEY");
            else
                expectKw("UNIQUE");
            if (!acceptKw("CLUSTERED"))
                acceptKw("NONCLUSTERED");
            expectSym("(");
            QStringList keyCols;
            do {
                const TsqlToken ct = peek();
                const QString c = name();
                bool found = false;
                for (const ColumnDef &d : std::as_const(cols))
                    found = found || d.name.compare(c, Qt::CaseInsensitive) == 0;
                if (!found)
                    error(QStringLiteral("Column name '%1' does not exist in the target table")
                              .arg(c),
                          ct);
                if (!acceptKw("ASC"))
                    acceptKw("DESC");
                keyCols << c;
            } while (acceptSym(","));
            expectSym(")");
            if (pk) {
                if (!tableKey.isEmpty())
                    syntaxError(peek());
                tableKey = keyCols;
            } else {
                uniques << keyCols;
            }
            continue;
        }
        cols << columnDef();
    } while (acceptSym(","));
    expectSym(")");
    skipStorageClause();

    if (tableKey.size() == 1) {
        for (ColumnDef &d : cols)
            if (d.name.compare(tableKey.first(), Qt::CaseInsensitive) == 0 && d.identity) {
                d.primaryKey = true;
                tableKey.clear();
            }
    }
    QStringList defs;
    QList<TsqlStatement> triggers;
    for (const ColumnDef &d : std::as_const(cols)) {
        QString def = quoteName(d.name) + QLatin1Char(' ');
        const bool intType = d.type.startsWith(QLatin1String("int")) ||
                             d.type.startsWith(QLatin1String("bigint")) ||
                             d.type.startsWith(QLatin1String("smallint")) ||
                             d.type.startsWith(QLatin1String("tinyint"));
        if (d.identity && d.primaryKey && intType) {
            // Only an INTEGER PRIMARY KEY numbers itself in SQLite.
            def += QLatin1String("INTEGER PRIMARY KEY AUTOINCREMENT");
        } else if (d.identity) {
            if (!intType)
                error(QStringLiteral("Identity column '%1' must be of an integer type").arg(d.name),
                      at);
            def += d.type + QLatin1String(" identity");
            if (d.primaryKey)
                def += QLatin1String(" PRIMARY KEY");
            triggers << identityTrigger(table, d.name);
        } else {
            def += d.type;
            if (d.kind == Kind::Text)
                def += collate();
            if (d.primaryKey)
                def += QLatin1String(" PRIMARY KEY");
            if (d.notNull)
                def += QLatin1String(" NOT NULL");
        }
        if (d.unique)
            def += QLatin1String(" UNIQUE");
        if (!d.defaultSql.isEmpty())
            def += QLatin1String(" DEFAULT (") + d.defaultSql + QLatin1Char(')');
        defs << def;
    }
    auto quoteList = [](const QStringList &names) {
        QStringList q;
        for (const QString &n : names)
            q << quoteName(n);
        return q.join(QLatin1String(", "));
    };
    if (!tableKey.isEmpty())
        defs << QStringLiteral("PRIMARY KEY (") + quoteList(tableKey) + QLatin1Char(')');
    for (const QStringList &u : std::as_const(uniques))
        defs << QStringLiteral("UNIQUE (") + quoteList(u) + QLatin1Char(')');
    TsqlStatement st;
    st.changesSchema = true;
    st.sql = QStringLiteral("CREATE TABLE ") + quoteName(table) + QLatin1String(" (") +
             defs.join(QLatin1String(", ")) + QLatin1Char(')');
    out.append(st);
    out.append(triggers);
}

TsqlStatement TsqlParser::identityTrigger(const QString &table, const QString &column)
{
    TsqlStatement st;
    st.changesSchema = true;
    st.sql = QStringLiteral("CREATE TRIGGER %1 AFTER INSERT ON %2 WHEN NEW.%3 IS NULL BEGIN "
                            "UPDATE %2 SET %3 = (SELECT IFNULL(MAX(%3), 0) + 1 FROM %2) "
                            "WHERE rowid = NEW.rowid; END")
                 .arg(quoteName(table + QLatin1String("$identity")), quoteName(table),
                      quoteName(column));
    return st;
}

TsqlParser::ColumnDef TsqlParser::columnDef()
{
    ColumnDef d;
    d.name = name();
    const TsqlToken typeToken = peek();
    const QString base = name().toLower();
    static const QSet<QString> textTypes = {
        QStringLiteral("varchar"),         QStringLiteral("nvarchar"), QStringLiteral("char"),
        QStringLiteral("nchar"),           QStringLiteral("text"),     QStringLiteral("ntext"),
        QStringLiteral("uniqueidentifier")};
    static const QSet<QString> dateTypes = {QStringLiteral("datetime"),
                                            QStringLiteral("smalldatetime"), QStringLiteral("date"),
                                            QStringLiteral("datetime2")};
    static const QSet<QString> numberTypes = {
        QStringLiteral("int"),    QStringLiteral("smallint"),   QStringLiteral("tinyint"),
        QStringLiteral("bigint"), QStringLiteral("decimal"),    QStringLiteral("numeric"),
        QStringLiteral("money"),  QStringLiteral("smallmoney"), QStringLiteral("float"),
        QStringLiteral("real")};
    if (textTypes.contains(base))
        d.kind = Kind::Text;
    else if (dateTypes.contains(base))
        d.kind = Kind::DateTime;
    else if (base == QLatin1String("bit"))
        d.kind = Kind::Bit;
    else if (numberTypes.contains(base))
        d.kind = Kind::Number;
    else
        error(QStringLiteral("Column, parameter, or variable #%1: Cannot find data type %2")
                  .arg(1)
                  .arg(typeToken.text),
              typeToken);
    d.type = base;
    if (acceptSym("(")) {
        QStringList args;
        do {
            const TsqlToken &a = take();
            if (a.kind == TsqlToken::Kind::Number || a.isKeyword("MAX"))
                args << a.text.toLower();
            else
                syntaxError(a);
        } while (acceptSym(","));
        expectSym(")");
        d.type += QLatin1Char('(') + args.join(QLatin1Char(',')) + QLatin1Char(')');
    }
    for (;;) {
        if (acceptKw("CONSTRAINT")) {
            name();
            continue;
        }
        if (acceptKw("COLLATE")) {
            const TsqlToken ct = peek();
            const QString collation = name();
            if (!collation.endsWith(QLatin1String("_CI_AS"), Qt::CaseInsensitive) &&
                !collation.endsWith(QLatin1String("_CI_AI"), Qt::CaseInsensitive))
                error(QStringLiteral("Collation '%1' is not supported by the embedded engine")
                          .arg(collation),
                      ct);
            continue;
        }
        if (acceptKw("NULL"))
            continue;
        if (acceptKw("NOT")) {
            expectKw("NULL");
            d.notNull = true;
            continue;
        }
        if (acceptKw("PRIMARY")) {
            expectKw("KEY");
            if (!acceptKw("CLUSTERED"))
                acceptKw("NONCLUSTERED");
            d.primaryKey = true;
            continue;
        }
        if (acceptKw("UNIQUE")) {
            if (!acceptKw("CLUSTERED"))
                acceptKw("NONCLUSTERED");
            d.unique = true;
            continue;
        }
        if (acceptKw("IDENTITY")) {
            if (acceptSym("(")) {
                const TsqlToken seed = take();
                expectSym(",");
                const TsqlToken step = take();
                if (seed.text != QLatin1String("1") || step.text != QLatin1String("1"))
                    syntaxError(seed);
                expectSym(")");
            }
            d.identity = true;
            continue;
        }
        if (acceptKw("DEFAULT")) {
            m_scope.clear();
            Val v = expr();
            if (d.kind == Kind::DateTime)
                v = dateOperand(v);
            d.defaultSql = v.sql;
            continue;
        }
        break;
    }
    return d;
}

} // namespace quorvale
