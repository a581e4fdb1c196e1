// Calls of T-SQL built-in functions, each written as the SQLite expression
// that gives the same result.
#include "tsql/tsqlparser.h"

namespace quorvale {

TsqlParser::Val TsqlParser::function()
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
        const Val arg = args.at(0).kind == Kind::DateTime ? args.at(0) : dateOperand(args.at(0));
        const char *part = fn == QLatin1String("YEAR")    ? "%Y"
                           : fn == QLatin1String("MONTH") ? "%m"
                                                          : "%d";
        v.sql =
            QStringLiteral("CAST(strftime('%1', %2) AS INTEGER)").arg(QLatin1String(part), arg.sql);
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
        error(QStringLiteral("'%1' is not a recognized built-in function name").arg(nameToken.text),
              nameToken);
    }
    if (star && fn != QLatin1String("COUNT"))
        syntaxError(nameToken);
    return v;
}

} // namespace quorvale
