#include "tsql/tsqltranslator.h"

#include "tsql/tsqlcatalog.h"
#include "tsql/tsqldatetime.h"
#include "tsql/tsqlerror.h"
#include "tsql/tsqltokenizer.h"

#include <QSet>

namespace quorvale {

namespace {

// What an expression yields. Unknown when only the running engine knows
// (a value of mixed or computed type); Null for the NULL literal.
enum class Kind { Unknown, Null, Text, Number, DateTime, Bit };

Kind kindOf(FieldKind k)
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

FieldKind fieldKindOf(Kind k)
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

bool isNumeric(Kind k)
{
    return k == Kind::Number || k == Kind::Bit;
}

struct Val {
    QString sql;
    Kind kind = Kind::Unknown;
    bool stringLiteral = false;
    QString stringValue;
    bool nullLiteral = false;
    bool numberLiteral = false;
    bool column = false;
    QString name; // result column name when selected without an alias
};

struct ScopeEntry {
    QString visible;
    const TsqlTable *table = nullptr;
};

struct OutputColumn {
    QString name;
    Kind kind = Kind::Unknown;
};

QString quoteName(const QString &name)
{
    QString q = name;
    q.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + q + QLatin1Char('"');
}

QString quoteString(const QString &value)
{
    QString q = value;
    q.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

QString collate()
{
    return QStringLiteral(" COLLATE ") + QLatin1String(tsqlCollation);
}

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

class Parser {
  public:
    Parser(TsqlCatalog &catalog, QList<TsqlToken> tokens)
        : m_catalog(catalog), m_t(std::move(tokens))
    {
    }

    // The next statement of the batch (several SQLite statements for one
    // CREATE TABLE with an identity); false at the end.
    bool next(QList<TsqlStatement> &out)
    {
        while (acceptSym(";")) {
        }
        if (peek().kind == TsqlToken::Kind::End)
            return false;
        const qsizetype first = out.size();
        const int position = peek().position;
        statement(out);
        for (qsizetype i = first; i < out.size(); ++i)
            out[i].position = position;
        return true;
    }

  private:
    TsqlCatalog &m_catalog;
    QList<TsqlToken> m_t;
    int m_p = 0;
    QList<ScopeEntry> m_scope;
    bool m_resolving = true;
    bool m_qualify = true;
    QList<OutputColumn> m_aliases; // select list, for ORDER BY

    // ---- token helpers -------------------------------------------------

    const TsqlToken &peek(int k = 0) const
    {
        const int i = qMin(m_p + k, int(m_t.size()) - 1);
        return m_t.at(i);
    }
    const TsqlToken &take() { return m_t.at(m_p < m_t.size() - 1 ? m_p++ : m_p); }
    bool acceptKw(const char *w)
    {
        if (!peek().isKeyword(w))
            return false;
        ++m_p;
        return true;
    }
    bool acceptSym(const char *s)
    {
        if (!peek().isSymbol(s))
            return false;
        ++m_p;
        return true;
    }
    void expectKw(const char *w)
    {
        if (!acceptKw(w))
            syntaxError(peek());
    }
    void expectSym(const char *s)
    {
        if (!acceptSym(s))
            syntaxError(peek());
    }
    [[noreturn]] static void syntaxError(const TsqlToken &t)
    {
        throw TsqlError(QStringLiteral("Incorrect syntax near '%1' (position %2).")
                            .arg(t.display())
                            .arg(t.position),
                        t.position);
    }
    [[noreturn]] static void error(const QString &message, const TsqlToken &t)
    {
        throw TsqlError(QStringLiteral("%1 (position %2).").arg(message).arg(t.position),
                        t.position);
    }
    static bool isReserved(const TsqlToken &t)
    {
        return t.kind == TsqlToken::Kind::Identifier && reservedWords().contains(t.text.toUpper());
    }
    // A name: a plain identifier that is not a keyword, or a bracketed one.
    QString name()
    {
        const TsqlToken &t = peek();
        if (t.kind == TsqlToken::Kind::QuotedIdentifier ||
            (t.kind == TsqlToken::Kind::Identifier && !isReserved(t))) {
            ++m_p;
            return t.text;
        }
        syntaxError(t);
    }
    bool atName() const
    {
        const TsqlToken &t = peek();
        return t.kind == TsqlToken::Kind::QuotedIdentifier ||
               (t.kind == TsqlToken::Kind::Identifier && !isReserved(t));
    }
    // [schema.]object; the schema (dbo) has no meaning in one SQLite file.
    QString objectName()
    {
        QString n = name();
        if (acceptSym(".")) {
            n = name();
            if (peek().isSymbol("."))
                syntaxError(peek());
        }
        return n;
    }
    const TsqlTable *tableNamed(const QString &n, const TsqlToken &at)
    {
        const TsqlTable *table = m_catalog.table(n);
        if (!table)
            error(QStringLiteral("Invalid object name '%1'").arg(n), at);
        return table;
    }

    // ---- statements ----------------------------------------------------

    void statement(QList<TsqlStatement> &out)
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

    TsqlStatement select()
    {
        expectKw("SELECT");
        const bool distinct = acceptKw("DISTINCT");
        if (!distinct)
            acceptKw("ALL");
        QString limit;
        if (acceptKw("TOP")) {
            const bool paren = acceptSym("(");
            const TsqlToken &n = take();
            bool ok = false;
            n.text.toLongLong(&ok);
            if (n.kind != TsqlToken::Kind::Number || !ok)
                syntaxError(n);
            limit = n.text;
            if (paren)
                expectSym(")");
            if (peek().isKeyword("PERCENT") || peek().isKeyword("WITH"))
                syntaxError(peek());
        }

        // The select list names tables that the FROM clause introduces later:
        // skip it first, read FROM, then come back and translate it.
        const int listStart = m_p;
        m_resolving = false;
        m_scope.clear();
        selectList(distinct);
        m_resolving = true;
        const int listEnd = m_p;

        QString from;
        if (acceptKw("FROM"))
            from = fromClause();
        QString where;
        if (acceptKw("WHERE"))
            where = expr().sql;
        QStringList groupBy;
        if (acceptKw("GROUP")) {
            expectKw("BY");
            do {
                const Val v = expr();
                groupBy << (v.kind == Kind::Text ? v.sql + collate() : v.sql);
            } while (acceptSym(","));
        }
        QString having;
        if (acceptKw("HAVING"))
            having = expr().sql;
        const int tailStart = m_p;

        m_p = listStart;
        QList<OutputColumn> columns;
        const QStringList items = selectList(distinct, &columns);
        if (m_p != listEnd)
            syntaxError(peek());
        m_p = tailStart;

        QStringList orderBy;
        if (acceptKw("ORDER")) {
            expectKw("BY");
            m_aliases = columns;
            do {
                orderBy << orderItem();
            } while (acceptSym(","));
            m_aliases.clear();
        }
        if (peek().kind != TsqlToken::Kind::End && !peek().isSymbol(";") &&
            !startsStatement(peek()))
            syntaxError(peek());

        QString sql = QStringLiteral("SELECT ");
        if (distinct)
            sql += QLatin1String("DISTINCT ");
        sql += items.join(QLatin1String(", "));
        if (!from.isEmpty())
            sql += QLatin1String(" FROM ") + from;
        if (!where.isEmpty())
            sql += QLatin1String(" WHERE ") + where;
        if (!groupBy.isEmpty())
            sql += QLatin1String(" GROUP BY ") + groupBy.join(QLatin1String(", "));
        if (!having.isEmpty())
            sql += QLatin1String(" HAVING ") + having;
        if (!orderBy.isEmpty())
            sql += QLatin1String(" ORDER BY ") + orderBy.join(QLatin1String(", "));
        if (!limit.isEmpty())
            sql += QLatin1String(" LIMIT ") + limit;

        TsqlStatement st;
        st.sql = sql;
        st.returnsRows = true;
        for (const OutputColumn &c : columns)
            st.columns.append(TsqlColumn{c.name, fieldKindOf(c.kind)});
        m_scope.clear();
        return st;
    }

    static bool startsStatement(const TsqlToken &t)
    {
        for (const char *w : {"SELECT", "INSERT", "UPDATE", "DELETE", "CREATE", "DROP", "SET"})
            if (t.isKeyword(w))
                return true;
        return false;
    }

    QStringList selectList(bool distinct, QList<OutputColumn> *columns = nullptr)
    {
        QStringList items;
        auto expand = [&](const ScopeEntry &e) {
            for (const TsqlTable::Column &c : e.table->columns) {
                items << quoteName(e.visible) + QLatin1Char('.') + quoteName(c.name);
                if (columns)
                    columns->append(OutputColumn{c.name, kindOf(c.kind)});
            }
        };
        do {
            if (acceptSym("*")) {
                for (const ScopeEntry &e : std::as_const(m_scope))
                    expand(e);
                if (m_resolving && m_scope.isEmpty())
                    error(QStringLiteral("SELECT * with no tables specified is not valid"), peek());
                continue;
            }
            if (atName() && peek(1).isSymbol(".") && peek(2).isSymbol("*")) {
                const TsqlToken at = peek();
                const QString table = name();
                m_p += 2;
                if (m_resolving)
                    expand(scopeEntry(table, at));
                continue;
            }
            Val v = expr();
            QString alias = v.name;
            bool aliased = false;
            if (acceptKw("AS")) {
                const TsqlToken &t = take();
                if (t.kind != TsqlToken::Kind::String && !t.isName())
                    syntaxError(t);
                alias = t.text;
                aliased = true;
            } else if (atName() || peek().kind == TsqlToken::Kind::String) {
                alias = take().text;
                aliased = true;
            }
            QString item = v.sql;
            // DISTINCT compares computed text the way SQL Server does only with the collation.
            if (distinct && v.kind == Kind::Text && !v.column)
                item = QLatin1Char('(') + item + QLatin1Char(')') + collate();
            if (aliased)
                item += QLatin1String(" AS ") + quoteName(alias);
            items << item;
            if (columns)
                columns->append(OutputColumn{alias, v.kind});
        } while (acceptSym(","));
        return items;
    }

    QString orderItem()
    {
        const TsqlToken &t = peek();
        QString sql;
        Kind kind = Kind::Unknown;
        const TsqlToken &after = peek(1);
        const bool bare =
            t.isName() && !isReserved(t) &&
            (after.isSymbol(",") || after.isKeyword("ASC") || after.isKeyword("DESC") ||
             after.kind == TsqlToken::Kind::End || after.isSymbol(";"));
        bool done = false;
        if (bare) {
            // A bare name that is one select-list column sorts by that column,
            // even where the name alone would be ambiguous among the tables.
            int match = -1;
            int matches = 0;
            for (int i = 0; i < m_aliases.size(); ++i) {
                if (m_aliases.at(i).name.compare(t.text, Qt::CaseInsensitive) == 0) {
                    match = i;
                    ++matches;
                }
            }
            if (matches == 1) {
                take();
                sql = QString::number(match + 1);
                kind = m_aliases.at(match).kind;
                done = true;
            }
        }
        if (!done) {
            const Val v = expr();
            if (v.numberLiteral) {
                bool ok = false;
                const int index = v.sql.toInt(&ok);
                if (!ok || index < 1 || index > m_aliases.size())
                    error(QStringLiteral("The ORDER BY position number %1 is out of range")
                              .arg(v.sql),
                          t);
                kind = m_aliases.at(index - 1).kind;
            } else {
                kind = v.kind;
            }
            sql = v.sql;
        }
        if (kind == Kind::Text)
            sql += collate();
        if (acceptKw("DESC"))
            sql += QLatin1String(" DESC");
        else if (acceptKw("ASC"))
            sql += QLatin1String(" ASC");
        return sql;
    }

    QString tableSource()
    {
        const TsqlToken at = peek();
        if (at.isSymbol("("))
            syntaxError(at);
        const QString n = objectName();
        const TsqlTable *table = tableNamed(n, at);
        QString visible = n;
        if (acceptKw("AS"))
            visible = name();
        else if (atName())
            visible = name();
        for (const ScopeEntry &e : std::as_const(m_scope))
            if (e.visible.compare(visible, Qt::CaseInsensitive) == 0)
                error(QStringLiteral("The objects \"%1\" and \"%2\" in the FROM clause have the "
                                     "same exposed names")
                          .arg(e.visible, visible),
                      at);
        if (peek().isKeyword("WITH"))
            syntaxError(peek());
        m_scope.append(ScopeEntry{visible, table});
        return quoteName(table->name) + QLatin1String(" AS ") + quoteName(visible);
    }

    QString fromClause()
    {
        QString sql = tableSource();
        for (;;) {
            if (acceptSym(",")) {
                sql += QLatin1String(", ") + tableSource();
                continue;
            }
            QString join;
            bool needsOn = true;
            if (acceptKw("INNER")) {
                expectKw("JOIN");
                join = QStringLiteral(" INNER JOIN ");
            } else if (acceptKw("JOIN")) {
                join = QStringLiteral(" INNER JOIN ");
            } else if (acceptKw("LEFT")) {
                acceptKw("OUTER");
                expectKw("JOIN");
                join = QStringLiteral(" LEFT JOIN ");
            } else if (acceptKw("RIGHT")) {
                acceptKw("OUTER");
                expectKw("JOIN");
                join = QStringLiteral(" RIGHT JOIN ");
            } else if (acceptKw("CROSS")) {
                expectKw("JOIN");
                join = QStringLiteral(" CROSS JOIN ");
                needsOn = false;
            } else {
                break;
            }
            sql += join + tableSource();
            if (needsOn) {
                expectKw("ON");
                sql += QLatin1String(" ON ") + expr().sql;
            }
        }
        return sql;
    }

    const ScopeEntry &scopeEntry(const QString &visible, const TsqlToken &at)
    {
        for (const ScopeEntry &e : std::as_const(m_scope))
            if (e.visible.compare(visible, Qt::CaseInsensitive) == 0)
                return e;
        error(QStringLiteral("The multi-part identifier \"%1\" could not be bound").arg(visible),
              at);
    }

    TsqlStatement insert()
    {
        expectKw("INSERT");
        acceptKw("INTO");
        const TsqlToken at = peek();
        const TsqlTable *table = tableNamed(objectName(), at);
        if (acceptKw("DEFAULT")) {
            expectKw("VALUES");
            TsqlStatement st;
            st.sql = QStringLiteral("INSERT INTO ") + quoteName(table->name) +
                     QLatin1String(" DEFAULT VALUES");
            return st;
        }
        QList<int> targets;
        if (acceptSym("(")) {
            do {
                const TsqlToken ct = peek();
                const QString c = name();
                const int index = table->indexOf(c);
                if (index < 0)
                    error(QStringLiteral("Invalid column name '%1'").arg(c), ct);
                targets << index;
            } while (acceptSym(","));
            expectSym(")");
        } else {
            for (int i = 0; i < table->columns.size(); ++i)
                if (!table->columns.at(i).identity)
                    targets << i;
        }
        QStringList names;
        for (int i : std::as_const(targets))
            names << quoteName(table->columns.at(i).name);
        QString sql = QStringLiteral("INSERT INTO ") + quoteName(table->name) +
                      QLatin1String(" (") + names.join(QLatin1String(", ")) + QLatin1Char(')');
        if (peek().isKeyword("SELECT")) {
            TsqlStatement inner = select();
            if (inner.columns.size() != targets.size())
                error(QStringLiteral("The select list does not match the insert column list"), at);
            sql += QLatin1Char(' ') + inner.sql;
        } else {
            expectKw("VALUES");
            QStringList rows;
            m_scope.clear();
            do {
                const TsqlToken rowStart = peek();
                expectSym("(");
                QStringList values;
                do {
                    const int target = targets.value(int(values.size()), -1);
                    Val v = expr();
                    if (target >= 0 && table->columns.at(target).kind == FieldKind::DateTime)
                        v = dateOperand(v);
                    values << v.sql;
                } while (acceptSym(","));
                expectSym(")");
                if (values.size() != targets.size())
                    error(QStringLiteral(
                              "There are fewer columns in the INSERT statement than values "
                              "specified in the VALUES clause, or the reverse"),
                          rowStart);
                rows << QLatin1Char('(') + values.join(QLatin1String(", ")) + QLatin1Char(')');
            } while (acceptSym(","));
            sql += QLatin1String(" VALUES ") + rows.join(QLatin1String(", "));
        }
        TsqlStatement st;
        st.sql = sql;
        return st;
    }

    TsqlStatement update()
    {
        expectKw("UPDATE");
        const TsqlToken at = peek();
        const TsqlTable *table = tableNamed(objectName(), at);
        m_scope = {ScopeEntry{table->name, table}};
        m_qualify = false;
        expectKw("SET");
        QStringList sets;
        do {
            const TsqlToken ct = peek();
            const QString c = name();
            const int index = table->indexOf(c);
            if (index < 0)
                error(QStringLiteral("Invalid column name '%1'").arg(c), ct);
            expectSym("=");
            Val v = expr();
            if (table->columns.at(index).kind == FieldKind::DateTime)
                v = dateOperand(v);
            sets << quoteName(table->columns.at(index).name) + QLatin1String(" = ") + v.sql;
        } while (acceptSym(","));
        QString sql = QStringLiteral("UPDATE ") + quoteName(table->name) + QLatin1String(" SET ") +
                      sets.join(QLatin1String(", "));
        if (acceptKw("WHERE"))
            sql += QLatin1String(" WHERE ") + expr().sql;
        m_qualify = true;
        m_scope.clear();
        TsqlStatement st;
        st.sql = sql;
        return st;
    }

    TsqlStatement deleteStatement()
    {
        expectKw("DELETE");
        acceptKw("FROM");
        const TsqlToken at = peek();
        const TsqlTable *table = tableNamed(objectName(), at);
        m_scope = {ScopeEntry{table->name, table}};
        m_qualify = false;
        QString sql = QStringLiteral("DELETE FROM ") + quoteName(table->name);
        if (acceptKw("WHERE"))
            sql += QLatin1String(" WHERE ") + expr().sql;
        m_qualify = true;
        m_scope.clear();
        TsqlStatement st;
        st.sql = sql;
        return st;
    }

    TsqlStatement drop()
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
    static QString indexName(const QString &table, const QString &index)
    {
        return table + QLatin1Char('$') + index;
    }

    void create(QList<TsqlStatement> &out)
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
                    error(QStringLiteral("Column name '%1' does not exist in the target table")
                              .arg(c),
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

    void skipStorageClause()
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

    struct ColumnDef {
        QString name;
        QString type;
        Kind kind = Kind::Unknown;
        bool identity = false;
        bool primaryKey = false;
        bool notNull = false;
        bool unique = false;
        QString defaultSql;
    };

    void createTable(QList<TsqlStatement> &out)
    {
        const TsqlToken at = peek();
        const QString table = objectName();
        if (m_catalog.table(table))
            error(
                QStringLiteral("There is already an object named '%1' in the database").arg(table),
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
                    error(QStringLiteral("Identity column '%1' must be of an integer type")
                              .arg(d.name),
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

    static TsqlStatement identityTrigger(const QString &table, const QString &column)
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

    ColumnDef columnDef()
    {
        ColumnDef d;
        d.name = name();
        const TsqlToken typeToken = peek();
        const QString base = name().toLower();
        static const QSet<QString> textTypes = {
            QStringLiteral("varchar"),         QStringLiteral("nvarchar"), QStringLiteral("char"),
            QStringLiteral("nchar"),           QStringLiteral("text"),     QStringLiteral("ntext"),
            QStringLiteral("uniqueidentifier")};
        static const QSet<QString> dateTypes = {
            QStringLiteral("datetime"), QStringLiteral("smalldatetime"), QStringLiteral("date"),
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

    // ---- expressions ---------------------------------------------------

    Val expr() { return orExpr(); }

    Val orExpr()
    {
        Val l = andExpr();
        while (acceptKw("OR")) {
            const Val r = andExpr();
            l = logical(QLatin1Char('(') + l.sql + QLatin1String(" OR ") + r.sql +
                        QLatin1Char(')'));
        }
        return l;
    }

    Val andExpr()
    {
        Val l = notExpr();
        while (acceptKw("AND")) {
            const Val r = notExpr();
            l = logical(QLatin1Char('(') + l.sql + QLatin1String(" AND ") + r.sql +
                        QLatin1Char(')'));
        }
        return l;
    }

    Val notExpr()
    {
        if (acceptKw("NOT")) {
            const Val v = notExpr();
            return logical(QLatin1String("(NOT ") + v.sql + QLatin1Char(')'));
        }
        return predicate();
    }

    static Val logical(const QString &sql)
    {
        Val v;
        v.sql = sql;
        v.kind = Kind::Number;
        return v;
    }

    // A string literal used where a datetime is wanted becomes the stored form.
    Val dateOperand(const Val &v) const
    {
        if (!v.stringLiteral || !m_resolving)
            return v;
        Val d = v;
        d.stringValue = tsqlDateTimeFromString(v.stringValue);
        d.sql = quoteString(d.stringValue);
        d.kind = Kind::DateTime;
        return d;
    }

    static bool textual(Kind k) { return k == Kind::Text; }
    static bool textOrOpen(Kind k)
    {
        return k == Kind::Text || k == Kind::Unknown || k == Kind::Null;
    }

    // Text against text compares under the *_CI_AS collation.
    static bool needsCollation(const Val &l, const Val &r)
    {
        return (textual(l.kind) && textOrOpen(r.kind)) || (textual(r.kind) && textOrOpen(l.kind));
    }

    static QString collated(const Val &v)
    {
        if (v.column || v.stringLiteral)
            return v.sql + collate();
        return QLatin1Char('(') + v.sql + QLatin1Char(')') + collate();
    }

    Val predicate()
    {
        Val l = additive();
        const TsqlToken op = peek();
        if (op.kind == TsqlToken::Kind::Symbol &&
            (op.text == QLatin1String("=") || op.text == QLatin1String("<>") ||
             op.text == QLatin1String("!=") || op.text == QLatin1String("<") ||
             op.text == QLatin1String(">") || op.text == QLatin1String("<=") ||
             op.text == QLatin1String(">=") || op.text == QLatin1String("!<") ||
             op.text == QLatin1String("!>"))) {
            take();
            Val r = additive();
            if (l.kind == Kind::DateTime)
                r = dateOperand(r);
            if (r.kind == Kind::DateTime)
                l = dateOperand(l);
            QString sqlOp = op.text;
            if (sqlOp == QLatin1String("!="))
                sqlOp = QStringLiteral("<>");
            else if (sqlOp == QLatin1String("!<"))
                sqlOp = QStringLiteral(">=");
            else if (sqlOp == QLatin1String("!>"))
                sqlOp = QStringLiteral("<=");
            const QString left = needsCollation(l, r) ? collated(l) : l.sql;
            return logical(QLatin1Char('(') + left + QLatin1Char(' ') + sqlOp + QLatin1Char(' ') +
                           r.sql + QLatin1Char(')'));
        }
        if (acceptKw("IS")) {
            const bool negated = acceptKw("NOT");
            expectKw("NULL");
            return logical(QLatin1Char('(') + l.sql +
                           (negated ? QLatin1String(" IS NOT NULL)") : QLatin1String(" IS NULL)")));
        }
        const bool negated = acceptKw("NOT");
        if (acceptKw("IN")) {
            expectSym("(");
            if (peek().isKeyword("SELECT"))
                syntaxError(peek());
            QStringList items;
            bool collation = false;
            do {
                Val v = additive();
                if (l.kind == Kind::DateTime)
                    v = dateOperand(v);
                collation = collation || needsCollation(l, v);
                items << v.sql;
            } while (acceptSym(","));
            expectSym(")");
            return logical(QLatin1Char('(') + (collation ? collated(l) : l.sql) +
                           (negated ? QLatin1String(" NOT IN (") : QLatin1String(" IN (")) +
                           items.join(QLatin1String(", ")) + QLatin1String("))"));
        }
        if (acceptKw("BETWEEN")) {
            Val lo = additive();
            expectKw("AND");
            Val hi = additive();
            if (l.kind == Kind::DateTime) {
                lo = dateOperand(lo);
                hi = dateOperand(hi);
            }
            const bool collation = needsCollation(l, lo) || needsCollation(l, hi);
            return logical(QLatin1Char('(') + (collation ? collated(l) : l.sql) +
                           (negated ? QLatin1String(" NOT BETWEEN ") : QLatin1String(" BETWEEN ")) +
                           lo.sql + QLatin1String(" AND ") + hi.sql + QLatin1Char(')'));
        }
        if (acceptKw("LIKE")) {
            const TsqlToken patternToken = peek();
            const Val pattern = additive();
            // SQL Server's [ ] character classes have no SQLite LIKE equivalent.
            if (pattern.stringLiteral && pattern.stringValue.contains(QLatin1Char('[')))
                error(QStringLiteral(
                          "LIKE character classes are not supported by the embedded engine"),
                      patternToken);
            return logical(QLatin1Char('(') + l.sql +
                           (negated ? QLatin1String(" NOT LIKE ") : QLatin1String(" LIKE ")) +
                           pattern.sql + QLatin1Char(')'));
        }
        if (negated)
            syntaxError(peek());
        return l;
    }

    Val additive()
    {
        Val l = multiplicative();
        for (;;) {
            const TsqlToken op = peek();
            if (op.isSymbol("+")) {
                take();
                l = plus(l, multiplicative(), op);
            } else if (op.isSymbol("-")) {
                take();
                const Val r = multiplicative();
                if (l.kind == Kind::DateTime || r.kind == Kind::DateTime)
                    error(QStringLiteral("Date arithmetic is not supported by the embedded engine"),
                          op);
                Val v;
                v.sql = QLatin1Char('(') + l.sql + QLatin1String(" - ") + r.sql + QLatin1Char(')');
                v.kind = Kind::Number;
                l = v;
            } else {
                return l;
            }
        }
    }

    // '+' adds numbers and joins strings; which one can depend on the row, so
    // only clear cases are decided here.
    Val plus(const Val &l, const Val &r, const TsqlToken &op)
    {
        if (l.kind == Kind::DateTime || r.kind == Kind::DateTime)
            error(QStringLiteral("Date arithmetic is not supported by the embedded engine"), op);
        Val v;
        if (l.kind == Kind::Text && r.kind == Kind::Text) {
            v.sql = QLatin1Char('(') + l.sql + QLatin1String(" || ") + r.sql + QLatin1Char(')');
            v.kind = Kind::Text;
        } else if (isNumeric(l.kind) && isNumeric(r.kind)) {
            v.sql = QLatin1Char('(') + l.sql + QLatin1String(" + ") + r.sql + QLatin1Char(')');
            v.kind = Kind::Number;
        } else {
            v.sql =
                QLatin1String("tsql_add(") + l.sql + QLatin1String(", ") + r.sql + QLatin1Char(')');
            v.kind = (isNumeric(l.kind) || isNumeric(r.kind)) ? Kind::Number : Kind::Unknown;
        }
        return v;
    }

    Val multiplicative()
    {
        Val l = unary();
        for (;;) {
            const TsqlToken op = peek();
            if (!op.isSymbol("*") && !op.isSymbol("/") && !op.isSymbol("%"))
                return l;
            take();
            const Val r = unary();
            Val v;
            v.sql = QLatin1Char('(') + l.sql + QLatin1Char(' ') + op.text + QLatin1Char(' ') +
                    r.sql + QLatin1Char(')');
            v.kind = Kind::Number;
            l = v;
        }
    }

    Val unary()
    {
        if (acceptSym("-")) {
            Val v = unary();
            if (v.numberLiteral) {
                v.sql = QLatin1Char('-') + v.sql;
                return v;
            }
            Val n;
            n.sql = QLatin1String("(-") + v.sql + QLatin1Char(')');
            n.kind = Kind::Number;
            return n;
        }
        if (acceptSym("+"))
            return unary();
        return primary();
    }

    Val primary()
    {
        const TsqlToken t = peek();
        Val v;
        switch (t.kind) {
        case TsqlToken::Kind::String:
            take();
            v.sql = quoteString(t.text);
            v.kind = Kind::Text;
            v.stringLiteral = true;
            v.stringValue = t.text;
            return v;
        case TsqlToken::Kind::Number:
            take();
            v.sql = t.text;
            v.kind = Kind::Number;
            v.numberLiteral = true;
            return v;
        case TsqlToken::Kind::Symbol:
            if (t.isSymbol("(")) {
                take();
                if (peek().isKeyword("SELECT"))
                    syntaxError(peek());
                Val inner = expr();
                expectSym(")");
                if (!inner.stringLiteral && !inner.numberLiteral && !inner.nullLiteral)
                    return inner;
                inner.sql = QLatin1Char('(') + inner.sql + QLatin1Char(')');
                return inner;
            }
            syntaxError(t);
        case TsqlToken::Kind::End:
            syntaxError(t);
        case TsqlToken::Kind::Identifier:
            if (t.isKeyword("NULL")) {
                take();
                v.sql = QStringLiteral("NULL");
                v.kind = Kind::Null;
                v.nullLiteral = true;
                return v;
            }
            if (t.isKeyword("CASE"))
                return caseExpr();
            if (peek(1).isSymbol("("))
                return function();
            if (isReserved(t))
                syntaxError(t);
            break;
        case TsqlToken::Kind::QuotedIdentifier:
            break;
        }
        return columnRef();
    }

    Val columnRef()
    {
        const TsqlToken first = peek();
        QStringList parts{name()};
        while (acceptSym("."))
            parts << name();
        if (parts.size() > 3)
            syntaxError(first);
        const QString column = parts.last();
        Val v;
        v.column = true;
        v.name = column;
        if (!m_resolving) {
            v.sql = QStringLiteral("NULL");
            return v;
        }
        const ScopeEntry *entry = nullptr;
        int index = -1;
        if (parts.size() >= 2) {
            entry = &scopeEntry(parts.at(parts.size() - 2), first);
            index = entry->table->indexOf(column);
            if (index < 0)
                error(QStringLiteral("Invalid column name '%1'").arg(column), first);
        } else {
            for (const ScopeEntry &e : std::as_const(m_scope)) {
                const int i = e.table->indexOf(column);
                if (i < 0)
                    continue;
                if (entry)
                    error(QStringLiteral("Ambiguous column name '%1'").arg(column), first);
                entry = &e;
                index = i;
            }
            if (!entry)
                error(QStringLiteral("Invalid column name '%1'").arg(column), first);
        }
        const TsqlTable::Column &c = entry->table->columns.at(index);
        v.sql = m_qualify ? quoteName(entry->visible) + QLatin1Char('.') + quoteName(c.name)
                          : quoteName(c.name);
        v.kind = kindOf(c.kind);
        return v;
    }

    Val caseExpr()
    {
        expectKw("CASE");
        QString sql = QStringLiteral("CASE");
        Val subject;
        const bool simple = !peek().isKeyword("WHEN");
        if (simple) {
            subject = expr();
            sql +=
                QLatin1Char(' ') + (subject.kind == Kind::Text ? collated(subject) : subject.sql);
        }
        Kind kind = Kind::Unknown;
        auto mergeKind = [&](const Val &branch) {
            if (kind == Kind::Unknown || kind == Kind::Null)
                kind = branch.kind;
        };
        if (!peek().isKeyword("WHEN"))
            syntaxError(peek());
        while (acceptKw("WHEN")) {
            Val when = expr();
            if (simple && subject.kind == Kind::DateTime)
                when = dateOperand(when);
            expectKw("THEN");
            const Val then = expr();
            mergeKind(then);
            sql += QLatin1String(" WHEN ") + when.sql + QLatin1String(" THEN ") + then.sql;
        }
        if (acceptKw("ELSE")) {
            const Val otherwise = expr();
            mergeKind(otherwise);
            sql += QLatin1String(" ELSE ") + otherwise.sql;
        }
        expectKw("END");
        Val v;
        v.sql = sql + QLatin1String(" END");
        v.kind = kind == Kind::Null ? Kind::Unknown : kind;
        return v;
    }

    Val function()
    {
        const TsqlToken nameToken = take();
        const QString fn = nameToken.text.toUpper();
        expectSym("(");
        QList<Val> args;
        bool star = false;
        bool distinct = false;
        if (fn == QLatin1String("COUNT") && acceptSym("*")) {
            star = true;
        } else if (!peek().isSymbol(")")) {
            distinct = acceptKw("DISTINCT");
            do {
                args << expr();
            } while (acceptSym(","));
        }
        expectSym(")");
        auto arity = [&](int min, int max) {
            if (args.size() < min || args.size() > max)
                error(QStringLiteral("The %1 function requires %2 argument(s)").arg(fn).arg(min),
                      nameToken);
        };
        auto call = [&](const QString &sqlName) {
            QStringList parts;
            for (const Val &a : std::as_const(args))
                parts << a.sql;
            return sqlName + QLatin1Char('(') +
                   (distinct ? QLatin1String("DISTINCT ") : QLatin1String("")) +
                   parts.join(QLatin1String(", ")) + QLatin1Char(')');
        };
        Val v;
        if (distinct && fn != QLatin1String("COUNT") && fn != QLatin1String("SUM") &&
            fn != QLatin1String("AVG"))
            syntaxError(nameToken);
        if (fn == QLatin1String("LEN")) {
            arity(1, 1);
            v.sql = QStringLiteral("length(rtrim(%1, ' '))").arg(args.at(0).sql);
            v.kind = Kind::Number;
        } else if (fn == QLatin1String("ISNULL")) {
            arity(2, 2);
            v.sql = call(QStringLiteral("ifnull"));
            v.kind = args.at(0).kind == Kind::Unknown || args.at(0).kind == Kind::Null
                         ? args.at(1).kind
                         : args.at(0).kind;
        } else if (fn == QLatin1String("COALESCE")) {
            arity(2, 100);
            v.sql = call(QStringLiteral("coalesce"));
            v.kind = args.at(0).kind;
        } else if (fn == QLatin1String("NULLIF")) {
            arity(2, 2);
            v.sql = call(QStringLiteral("nullif"));
            v.kind = args.at(0).kind;
        } else if (fn == QLatin1String("LTRIM") || fn == QLatin1String("RTRIM")) {
            arity(1, 1);
            v.sql = QStringLiteral("%1(%2, ' ')").arg(fn.toLower(), args.at(0).sql);
            v.kind = Kind::Text;
        } else if (fn == QLatin1String("UPPER") || fn == QLatin1String("LOWER")) {
            arity(1, 1);
            v.sql = call(fn.toLower());
            v.kind = Kind::Text;
        } else if (fn == QLatin1String("SUBSTRING")) {
            arity(3, 3);
            v.sql = call(QStringLiteral("substr"));
            v.kind = Kind::Text;
        } else if (fn == QLatin1String("LEFT")) {
            arity(2, 2);
            v.sql = QStringLiteral("substr(%1, 1, %2)").arg(args.at(0).sql, args.at(1).sql);
            v.kind = Kind::Text;
        } else if (fn == QLatin1String("RIGHT")) {
            arity(2, 2);
            v.sql = QStringLiteral("CASE WHEN %2 > 0 THEN substr(%1, -(%2)) ELSE '' END")
                        .arg(args.at(0).sql, args.at(1).sql);
            v.kind = Kind::Text;
        } else if (fn == QLatin1String("CHARINDEX")) {
            arity(2, 2);
            v.sql = QStringLiteral("instr(%1, %2)").arg(args.at(1).sql, args.at(0).sql);
            v.kind = Kind::Number;
        } else if (fn == QLatin1String("GETDATE")) {
            arity(0, 0);
            v.sql = QStringLiteral("strftime('%Y-%m-%d %H:%M:%S', 'now', 'localtime')");
            v.kind = Kind::DateTime;
        } else if (fn == QLatin1String("YEAR") || fn == QLatin1String("MONTH") ||
                   fn == QLatin1String("DAY")) {
            arity(1, 1);
            const Val arg =
                args.at(0).kind == Kind::DateTime ? args.at(0) : dateOperand(args.at(0));
            const char *part = fn == QLatin1String("YEAR")    ? "%Y"
                               : fn == QLatin1String("MONTH") ? "%m"
                                                              : "%d";
            v.sql = QStringLiteral("CAST(strftime('%1', %2) AS INTEGER)")
                        .arg(QLatin1String(part), arg.sql);
            v.kind = Kind::Number;
        } else if (fn == QLatin1String("ABS")) {
            arity(1, 1);
            v.sql = call(QStringLiteral("abs"));
            v.kind = Kind::Number;
        } else if (fn == QLatin1String("ROUND")) {
            arity(2, 2);
            v.sql = call(QStringLiteral("round"));
            v.kind = Kind::Number;
        } else if (fn == QLatin1String("COUNT")) {
            if (!star)
                arity(1, 1);
            v.sql = star ? QStringLiteral("count(*)") : call(QStringLiteral("count"));
            v.kind = Kind::Number;
        } else if (fn == QLatin1String("SUM") || fn == QLatin1String("AVG")) {
            arity(1, 1);
            v.sql = call(fn.toLower());
            v.kind = Kind::Number;
        } else if (fn == QLatin1String("MIN") || fn == QLatin1String("MAX")) {
            arity(1, 1);
            v.sql = args.at(0).kind == Kind::Text
                        ? QStringLiteral("%1(%2)").arg(fn.toLower(), collated(args.at(0)))
                        : call(fn.toLower());
            v.kind = args.at(0).kind;
        } else {
            error(QStringLiteral("'%1' is not a recognized built-in function name")
                      .arg(nameToken.text),
                  nameToken);
        }
        if (star && fn != QLatin1String("COUNT"))
            syntaxError(nameToken);
        return v;
    }
};

} // namespace

TsqlTranslator::TsqlTranslator(TsqlCatalog &catalog) : m_catalog(catalog) {}

void TsqlTranslator::translate(const QString &tsql,
                               const std::function<void(const TsqlStatement &)> &run)
{
    Parser parser(m_catalog, TsqlTokenizer::tokenize(tsql));
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
