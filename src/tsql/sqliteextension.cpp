// The loadable SQLite extension (libquorvale_sqlite.so, quorvale_sqlite.dll):
// the collation and functions of the embedded engine for outside tools, so
// that they can write to indexed text columns and keep the indexes in the
// order the program reads them. Built from the same source as the program's
// own registration; not part of the tsql library.
#include "tsql/tsqlfunctions.h"

#include <QtGlobal>
#include <sqlite3ext.h>

SQLITE_EXTENSION_INIT1

// SQLite derives the entry point's name from the file name: "quorvale_sqlite"
// without its non-letters.
extern "C" Q_DECL_EXPORT int sqlite3_quorvalesqlite_init(sqlite3 *db, char **errorMessage,
                                                         const sqlite3_api_routines *api)
{
    SQLITE_EXTENSION_INIT2(api);
    if (quorvale::registerTsqlFunctions(db))
        return SQLITE_OK;
    if (errorMessage)
        *errorMessage = sqlite3_mprintf("quorvale_sqlite: %s", sqlite3_errmsg(db));
    return SQLITE_ERROR;
}
