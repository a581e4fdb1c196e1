#include "tools/admincommands.h"

#include "tools/backgroundcommand.h"
#include "tools/configcommand.h"
#include "tools/createdbcommand.h"
#include "tools/exportcommand.h"
#include "tools/iconcommand.h"
#include "tools/importcommand.h"
#include "tools/snapshotcommand.h"
#include "tools/sqlcommand.h"

namespace quorvale {

// A new subcommand is one more entry in this list; its help comes with it.
QList<AdminCommand> adminCommands()
{
    return {createDbCommand(), configCommand(),         exportCommand(),   snapshotCommand(),
            sqlCommand(),      importCommand(),         makeBackgroundCommand(), makeIconCommand()};
}

} // namespace quorvale
