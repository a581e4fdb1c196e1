#pragma once

#include <QString>

namespace quorvale {

// One lexical token of a T-SQL statement. Keywords are plain identifiers; the
// parser matches them without regard to case.
struct TsqlToken {
    enum class Kind {
        Identifier,       // name or keyword
        QuotedIdentifier, // [name] or "name", text without the delimiters
        String,           // '...' or N'...', text unescaped
        Number,
        Symbol, // operators and punctuation
        End
    };
    Kind kind = Kind::End;
    QString text;
    int position = 0; // 1-based character position in the statement
    bool national = false;

    bool isKeyword(const char *word) const
    {
        return kind == Kind::Identifier &&
               text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    }
    bool isSymbol(const char *symbol) const
    {
        return kind == Kind::Symbol && text == QLatin1String(symbol);
    }
    bool isName() const { return kind == Kind::Identifier || kind == Kind::QuotedIdentifier; }
    // How the token reads in an error message.
    QString display() const
    {
        switch (kind) {
        case Kind::End:
            return QStringLiteral("end of statement");
        case Kind::String:
            return (national ? QStringLiteral("N'") : QStringLiteral("'")) + text +
                   QLatin1Char('\'');
        case Kind::QuotedIdentifier:
            return QLatin1Char('[') + text + QLatin1Char(']');
        default:
            return text;
        }
    }
};

} // namespace quorvale
