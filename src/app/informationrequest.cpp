#include "informationrequest.h"

#include "runtime/console.h"
#include "runtime/programinfo.h"

#include <cstdio>
#include <cstring>

namespace quorvale {

namespace {

const char kHelp[] = R"(Usage: quorvale [SESSION]
       quorvale --help | --version

Quorvale shows the property-management company's reports: staff sign in,
choose a report, a management office and a period, see the rows in a grid,
export chosen columns to a sheet of an Excel workbook and print the grid.

Without arguments the program opens its login window. It connects to the
database named by the settings that "quorvale-admin config" writes.

SESSION is the sign-in another program has already made: ten comma-separated
values, in this order: user number, user name, department code, department
name, post code, post name, department class code, department class name,
post class code, post class name. With them the login window is skipped and
the main window opens at once. Fields after the tenth are ignored; fewer than
ten end the program with a run-time error. Arguments are joined with one blank,
so a value may contain blanks.

  -h, --help  show this text and exit
  --version   show the version and exit

Settings: $XDG_CONFIG_HOME/Quorvale.ini (normally ~/.config/Quorvale.ini).
See quorvale(1) and quorvale-admin(1).
)";

} // namespace

std::optional<int> answerInformationRequest(int argc, char **argv)
{
    // A session has at least nine commas, so neither word can be one.
    if (argc != 2)
        return std::nullopt;
    useUtf8Console();
    if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
        std::fputs(kHelp, stdout);
        return 0;
    }
    if (std::strcmp(argv[1], "--version") == 0) {
        std::printf("quorvale %s\n", programVersion().toUtf8().constData());
        return 0;
    }
    return std::nullopt;
}

} // namespace quorvale
