#include "tools/admincommands.h"

#include "tools/backgroundcommand.h"
#include "tools/configcommand.h"
#include "tools/createdbcommand.h"
#include "tools/exportcommand.h"
#include "tools/iconcommand.h"

namespace quorvale {

// A new subcommand is one more entry in this list; its help comes with it.
QList<AdminCommand> adminCommands()
{
    return {createDbCommand(), configCommand(), exportCommand(), makeBackgroundCommand(),
            makeIconCommand()};
}

} // namespace quorvale
