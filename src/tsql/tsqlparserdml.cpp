// INSERT, UPDATE and DELETE: one table, its columns checked by name, dates
// given as strings stored in the engine's form.
#include "tsql/tsqlparser.h"

namespace quorvale {

TsqlStatement TsqlParser::insert()
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
    QString sql = QStringLiteral("INSERT INTO ") + quoteName(table->name) + QLatin1String(" (") +
                  names.join(QLatin1String(", ")) + QLatin1Char(')');
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
                error(QStringLiteral("There are fewer columns in the INSERT statement than values "
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

TsqlStatement TsqlParser::update()
{
    expectKw("UPDATE");
    const TsqlTable *table = enterSingleTable();
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
    return leaveSingleTable(QStringLiteral("UPDATE ") + quoteName(table->name) +
                            QLatin1String(" SET ") + sets.join(QLatin1String(", ")));
}

TsqlStatement TsqlParser::deleteStatement()
{
    expectKw("DELETE");
    acceptKw("FROM");
    const TsqlTable *table = enterSingleTable();
    return leaveSingleTable(QStringLiteral("DELETE FROM ") + quoteName(table->name));
}

// UPDATE and DELETE name one table, whose columns are written unqualified.
const TsqlTable *TsqlParser::enterSingleTable()
{
    const TsqlToken at = peek();
    const TsqlTable *table = tableNamed(objectName(), at);
    m_scope = {ScopeEntry{table->name, table}};
    m_qualify = false;
    return table;
}

TsqlStatement TsqlParser::leaveSingleTable(QString sql)
{
    if (acceptKw("WHERE"))
        sql += QLatin1String(" WHERE ") + expr().sql;
    m_qualify = true;
    m_scope.clear();
    TsqlStatement st;
    st.sql = sql;
    return st;
}

} // namespace quorvale
