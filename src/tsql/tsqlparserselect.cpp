// SELECT: the select list, FROM with its joins and the names they bring into
// scope, WHERE, GROUP BY, HAVING, ORDER BY and TOP.
#include "tsql/tsqlparser.h"

namespace quorvale {

TsqlStatement TsqlParser::select()
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
    if (peek().kind != TsqlToken::Kind::End && !peek().isSymbol(";") && !startsStatement(peek()))
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

QStringList TsqlParser::selectList(bool distinct, QList<OutputColumn> *columns)
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

QString TsqlParser::orderItem()
{
    const TsqlToken &t = peek();
    QString sql;
    Kind kind = Kind::Unknown;
    const TsqlToken &after = peek(1);
    const bool bare = t.isName() && !isReserved(t) &&
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
                error(QStringLiteral("The ORDER BY position number %1 is out of range").arg(v.sql),
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

QString TsqlParser::tableSource()
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

QString TsqlParser::fromClause()
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

const TsqlParser::ScopeEntry &TsqlParser::scopeEntry(const QString &visible, const TsqlToken &at)
{
    for (const ScopeEntry &e : std::as_const(m_scope))
        if (e.visible.compare(visible, Qt::CaseInsensitive) == 0)
            return e;
    error(QStringLiteral("The multi-part identifier \"%1\" could not be bound").arg(visible), at);
}

} // namespace quorvale
