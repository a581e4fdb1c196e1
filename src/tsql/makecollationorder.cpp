// make-collation-order: writes the committed collation table from this
// machine's Chinese collator (run where Qt uses ICU):
//   build/src/make-collation-order > src/tsql/tsqlcollationtable.h
#include "tsql/tsqlcollationorder.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QString order = quorvale::collationOrderFromCollator();
    QTextStream out(stdout);
    out << "#pragma once\n\n"
           "// The collation order, written by make-collation-order from the ICU collator;\n"
           "// do not edit (see tsqlcollationorder.h).\n"
           "namespace quorvale {\n"
           "inline constexpr char16_t kCollationTable[] =\n";
    constexpr int perLine = 60;
    for (qsizetype i = 0; i < order.size(); i += perLine) {
        out << "    u\"";
        for (const QChar ch : order.mid(i, perLine)) {
            // Only what reads as itself goes in raw: no controls, marks or spaces.
            const bool invisible = ch != u' ' && !ch.isLetterOrNumber() && !ch.isPunct() &&
                                   !ch.isSymbol();
            if (invisible)
                out << QStringLiteral("\\u%1").arg(ch.unicode(), 4, 16, QLatin1Char('0'));
            else if (ch == u'"' || ch == u'\\')
                out << '\\' << ch;
            else
                out << ch;
        }
        out << '"' << (i + perLine >= order.size() ? ";\n" : "\n");
    }
    out << "} // namespace quorvale\n";
    return 0;
}
