// Expressions: logic, comparisons under the case-insensitive collation,
// arithmetic and string joins, literals, column references and CASE.
#include "tsql/tsqlparser.h"

#include "tsql/tsqldatetime.h"

namespace quorvale {

TsqlParser::Val TsqlParser::orExpr()
{
    Val l = andExpr();
    while (acceptKw("OR")) {
        const Val r = andExpr();
        l = logical(QLatin1Char('(') + l.sql + QLatin1String(" OR ") + r.sql + QLatin1Char(')'));
    }
    return l;
}

TsqlParser::Val TsqlParser::andExpr()
{
    Val l = notExpr();
    while (acceptKw("AND")) {
        const Val r = notExpr();
        l = logical(QLatin1Char('(') + l.sql + QLatin1String(" AND ") + r.sql + QLatin1Char(')'));
    }
    return l;
}

TsqlParser::Val TsqlParser::notExpr()
{
    if (acceptKw("NOT")) {
        const Val v = notExpr();
        return logical(QLatin1String("(NOT ") + v.sql + QLatin1Char(')'));
    }
    return predicate();
}

TsqlParser::Val TsqlParser::logical(const QString &sql)
{
    Val v;
    v.sql = sql;
    v.kind = Kind::Number;
    return v;
}

// A string literal used where a datetime is wanted becomes the stored form.
TsqlParser::Val TsqlParser::dateOperand(const Val &v) const
{
    if (!v.stringLiteral || !m_resolving)
        return v;
    Val d = v;
    d.stringValue = tsqlDateTimeFromString(v.stringValue);
    d.sql = quoteString(d.stringValue);
    d.kind = Kind::DateTime;
    return d;
}

bool TsqlParser::textual(Kind k)
{
    return k == Kind::Text;
}

bool TsqlParser::textOrOpen(Kind k)
{
    return k == Kind::Text || k == Kind::Unknown || k == Kind::Null;
}

// Text against text compares under the *_CI_AS collation.
bool TsqlParser::needsCollation(const Val &l, const Val &r)
{
    return (textual(l.kind) && textOrOpen(r.kind)) || (textual(r.kind) && textOrOpen(l.kind));
}

QString TsqlParser::collated(const Val &v)
{
    if (v.column || v.stringLiteral)
        return v.sql + collate();
    return QLatin1Char('(') + v.sql + QLatin1Char(')') + collate();
}

TsqlParser::Val TsqlParser::predicate()
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
            error(QStringLiteral("LIKE character classes are not supported by the embedded engine"),
                  patternToken);
        return logical(QLatin1Char('(') + l.sql +
                       (negated ? QLatin1String(" NOT LIKE ") : QLatin1String(" LIKE ")) +
                       pattern.sql + QLatin1Char(')'));
    }
    if (negated)
        syntaxError(peek());
    return l;
}

TsqlParser::Val TsqlParser::additive()
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
TsqlParser::Val TsqlParser::plus(const Val &l, const Val &r, const TsqlToken &op)
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
        v.sql = QLatin1String("tsql_add(") + l.sql + QLatin1String(", ") + r.sql + QLatin1Char(')');
        v.kind = (isNumeric(l.kind) || isNumeric(r.kind)) ? Kind::Number : Kind::Unknown;
    }
    return v;
}

TsqlParser::Val TsqlParser::multiplicative()
{
    Val l = unary();
    for (;;) {
        const TsqlToken op = peek();
        if (!op.isSymbol("*") && !op.isSymbol("/") && !op.isSymbol("%"))
            return l;
        take();
        const Val r = unary();
        Val v;
        v.sql = QLatin1Char('(') + l.sql + QLatin1Char(' ') + op.text + QLatin1Char(' ') + r.sql +
                QLatin1Char(')');
        v.kind = Kind::Number;
        l = v;
    }
}

TsqlParser::Val TsqlParser::unary()
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

TsqlParser::Val TsqlParser::primary()
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

TsqlParser::Val TsqlParser::columnRef()
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

TsqlParser::Val TsqlParser::caseExpr()
{
    expectKw("CASE");
    QString sql = QStringLiteral("CASE");
    Val subject;
    const bool simple = !peek().isKeyword("WHEN");
    if (simple) {
        subject = expr();
        sql += QLatin1Char(' ') + (subject.kind == Kind::Text ? collated(subject) : subject.sql);
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

} // namespace quorvale
