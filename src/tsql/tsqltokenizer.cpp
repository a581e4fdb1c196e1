#include "tsql/tsqltokenizer.h"

#include "tsql/tsqlerror.h"

namespace quorvale {

namespace {

bool isNameStart(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_') || c == QLatin1Char('@') || c == QLatin1Char('#');
}

bool isNamePart(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('@') ||
           c == QLatin1Char('#') || c == QLatin1Char('$') || c.isMark();
}

[[noreturn]] void fail(const QString &what, int index)
{
    throw TsqlError(
        QStringLiteral("Incorrect syntax near '%1' (position %2).").arg(what).arg(index + 1),
        index + 1);
}

} // namespace

QList<TsqlToken> TsqlTokenizer::tokenize(const QString &sql)
{
    QList<TsqlToken> tokens;
    const int n = int(sql.size());
    int i = 0;
    auto push = [&](TsqlToken::Kind kind, QString text, int start, bool national = false) {
        TsqlToken t;
        t.kind = kind;
        t.text = std::move(text);
        t.position = start + 1;
        t.national = national;
        tokens.append(std::move(t));
    };
    while (i < n) {
        const QChar c = sql.at(i);
        if (c.isSpace()) {
            ++i;
            continue;
        }
        if (c == QLatin1Char('-') && i + 1 < n && sql.at(i + 1) == QLatin1Char('-')) {
            while (i < n && sql.at(i) != QLatin1Char('\n'))
                ++i;
            continue;
        }
        if (c == QLatin1Char('/') && i + 1 < n && sql.at(i + 1) == QLatin1Char('*')) {
            const int end = int(sql.indexOf(QLatin1String("*/"), i + 2));
            if (end < 0)
                fail(QStringLiteral("/*"), i);
            i = end + 2;
            continue;
        }
        const int start = i;
        const bool national = (c == QLatin1Char('N') || c == QLatin1Char('n')) && i + 1 < n &&
                              sql.at(i + 1) == QLatin1Char('\'');
        if (c == QLatin1Char('\'') || national) {
            i += national ? 2 : 1;
            QString text;
            for (;;) {
                if (i >= n)
                    fail(sql.mid(start, 10), start);
                if (sql.at(i) == QLatin1Char('\'')) {
                    if (i + 1 < n && sql.at(i + 1) == QLatin1Char('\'')) {
                        text += QLatin1Char('\'');
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                text += sql.at(i++);
            }
            push(TsqlToken::Kind::String, text, start, national);
            continue;
        }
        if (c == QLatin1Char('[') || c == QLatin1Char('"')) {
            const QChar close = c == QLatin1Char('[') ? QLatin1Char(']') : QLatin1Char('"');
            ++i;
            QString text;
            for (;;) {
                if (i >= n)
                    fail(sql.mid(start, 10), start);
                if (sql.at(i) == close) {
                    if (i + 1 < n && sql.at(i + 1) == close) {
                        text += close;
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                text += sql.at(i++);
            }
            push(TsqlToken::Kind::QuotedIdentifier, text, start);
            continue;
        }
        if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && sql.at(i + 1).isDigit())) {
            while (i < n && sql.at(i).isDigit())
                ++i;
            if (i < n && sql.at(i) == QLatin1Char('.')) {
                ++i;
                while (i < n && sql.at(i).isDigit())
                    ++i;
            }
            if (i < n && (sql.at(i) == QLatin1Char('e') || sql.at(i) == QLatin1Char('E'))) {
                int j = i + 1;
                if (j < n && (sql.at(j) == QLatin1Char('+') || sql.at(j) == QLatin1Char('-')))
                    ++j;
                if (j < n && sql.at(j).isDigit()) {
                    i = j;
                    while (i < n && sql.at(i).isDigit())
                        ++i;
                }
            }
            if (i < n && isNameStart(sql.at(i)))
                fail(sql.mid(start, i - start + 1), start);
            push(TsqlToken::Kind::Number, sql.mid(start, i - start), start);
            continue;
        }
        if (isNameStart(c)) {
            while (i < n && isNamePart(sql.at(i)))
                ++i;
            push(TsqlToken::Kind::Identifier, sql.mid(start, i - start), start);
            continue;
        }
        static const char *const twoChar[] = {"<>", "<=", ">=", "!=", "!<", "!>"};
        bool matched = false;
        if (i + 1 < n) {
            for (const char *op : twoChar) {
                if (sql.at(i) == QLatin1Char(op[0]) && sql.at(i + 1) == QLatin1Char(op[1])) {
                    push(TsqlToken::Kind::Symbol, QString::fromLatin1(op), start);
                    i += 2;
                    matched = true;
                    break;
                }
            }
        }
        if (matched)
            continue;
        if (QStringLiteral("(),.;=<>+-*/%").contains(c)) {
            push(TsqlToken::Kind::Symbol, QString(c), start);
            ++i;
            continue;
        }
        fail(QString(c), i);
    }
    TsqlToken end;
    end.position = n + 1;
    tokens.append(end);
    return tokens;
}

} // namespace quorvale
