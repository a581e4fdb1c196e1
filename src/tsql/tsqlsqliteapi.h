#pragma once

// The SQLite API as the collation and functions call it: linked directly in
// the program, and through the loading host's routine table when the same
// source is built as the loadable extension, which must not bring a second
// SQLite into a host (a shell, Python, a database browser) that has its own.
#ifdef QUORVALE_SQLITE_EXTENSION
#include <sqlite3ext.h>
SQLITE_EXTENSION_INIT3
#else
#include <sqlite3.h>
#endif
