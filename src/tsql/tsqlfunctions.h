#pragma once

struct sqlite3;

namespace quorvale {

// Installs on one SQLite connection what the translated statements call: the
// CI_AS collation (case- and trailing-blank-insensitive, Chinese by pinyin)
// and tsql_add ('+' decided per row). Returns false when SQLite refuses.
// The same source is the loadable extension for outside tools
// (sqliteextension.cpp), so their index order is the program's.
bool registerTsqlFunctions(sqlite3 *db);

} // namespace quorvale
