#pragma once

#include "tsql/fieldkind.h"
#include "tsql/tsqlerror.h"
#include "tsql/tsqlstatement.h"
#include "tsql/tsqltable.h"
#include "tsql/tsqltoken.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvale {

class TsqlCatalog;

// TsqlTranslator's working part: reads one batch's tokens and writes the
// SQLite text of each statement. One class, implemented over several files,
// one part of the grammar each: tsqlparser.cpp (statement dispatch, names,
// quoting, value kinds), tsqlparserselect.cpp (SELECT and its FROM clause),
// tsqlparserdml.cpp (INSERT, UPDATE, DELETE), tsqlparserddl.cpp (CREATE and
// DROP), tsqlparserexpressions.cpp (operators, literals, columns, CASE) and
// tsqlparserbuiltins.cpp (built-in function calls).
class TsqlParser {
  public:
    TsqlParser(TsqlCatalog &catalog, QList<TsqlToken> tokens)
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
    // What an expression yields. Unknown when only the running engine knows
    // (a value of mixed or computed type); Null for the NULL literal.
    enum class Kind { Unknown, Null, Text, Number, DateTime, Bit };

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
    static bool isReserved(const TsqlToken &t);
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
    const TsqlTable *tableNamed(const QString &n, const TsqlToken &at);

    // ---- value kinds and SQLite text (tsqlparser.cpp) ------------------

    static Kind kindOf(FieldKind k);
    static FieldKind fieldKindOf(Kind k);
    static bool isNumeric(Kind k);
    static QString quoteName(const QString &name);
    static QString quoteString(const QString &value);
    static QString collate();

    // ---- statements (tsqlparser.cpp) -----------------------------------

    void statement(QList<TsqlStatement> &out);
    static bool startsStatement(const TsqlToken &t);

    // ---- SELECT (tsqlparserselect.cpp) ---------------------------------

    TsqlStatement select();
    QStringList selectList(bool distinct, QList<OutputColumn> *columns = nullptr);
    QString orderItem();
    QString tableSource();
    QString fromClause();
    const ScopeEntry &scopeEntry(const QString &visible, const TsqlToken &at);

    // ---- INSERT, UPDATE, DELETE (tsqlparserdml.cpp) --------------------

    TsqlStatement insert();
    TsqlStatement update();
    TsqlStatement deleteStatement();
    const TsqlTable *enterSingleTable();
    TsqlStatement leaveSingleTable(QString sql);

    // ---- CREATE, DROP (tsqlparserddl.cpp) ------------------------------

    TsqlStatement drop();
    static QString indexName(const QString &table, const QString &index);
    void create(QList<TsqlStatement> &out);
    void skipStorageClause();
    void createTable(QList<TsqlStatement> &out);
    static TsqlStatement identityTrigger(const QString &table, const QString &column);
    ColumnDef columnDef();

    // ---- expressions (tsqlparserexpressions.cpp) -----------------------

    Val expr() { return orExpr(); }
    Val orExpr();
    Val andExpr();
    Val notExpr();
    static Val logical(const QString &sql);
    Val dateOperand(const Val &v) const;
    static bool textual(Kind k);
    static bool textOrOpen(Kind k);
    static bool needsCollation(const Val &l, const Val &r);
    static QString collated(const Val &v);
    Val predicate();
    Val additive();
    Val plus(const Val &l, const Val &r, const TsqlToken &op);
    Val multiplicative();
    Val unary();
    Val primary();
    Val columnRef();
    Val caseExpr();

    // ---- built-in functions (tsqlparserbuiltins.cpp) -------------------

    Val function();
};

} // namespace quorvale
