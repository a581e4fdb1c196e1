#include "tools/adminhelp.h"

#include <algorithm>

namespace quorvale {

namespace {

// Names padded to one column, texts beside them.
void printColumns(const QList<AdminOption> &rows, QTextStream &out)
{
    qsizetype width = 0;
    for (const AdminOption &row : rows)
        width = std::max(width, row.name.size());
    for (const AdminOption &row : rows)
        out << "  " << row.name.leftJustified(width + 2) << row.text << '\n';
}

} // namespace

void printAdminHelp(const QList<AdminCommand> &commands, QTextStream &out)
{
    out << "usage: quorvale-admin COMMAND [ARGUMENTS]\n"
           "       quorvale-admin COMMAND --help\n"
           "       quorvale-admin --help | --version\n"
           "\n"
           "Sets up Quorvale: its database settings, embedded databases, and reports\n"
           "exported without the desktop program.\n"
           "\n"
           "Commands:\n";
    QList<AdminOption> rows;
    for (const AdminCommand &command : commands)
        rows << AdminOption{command.name, command.summary};
    printColumns(rows, out);
    out << "\n"
           "Exit status: 0 done; 2 bad arguments; 3 refused (sign-in, office or the\n"
           "window's input checks); 4 file or database error.\n";
}

void printCommandHelp(const AdminCommand &command, QTextStream &out)
{
    out << "usage: quorvale-admin " << command.name << ' ' << command.synopsis << "\n\n"
        << command.summary << "\n\n";
    printColumns(command.options, out);
    out << "\nExample:\n  " << command.example << '\n';
}

} // namespace quorvale
