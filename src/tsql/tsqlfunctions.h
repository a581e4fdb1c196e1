#pragma once

struct sqlite3;

namespace quorvale {

// Installs on one SQLite connection what the translated statements call: the
// CI_AS collation (case- and trailing-blank-insensitive, Chinese by pinyin)
// and tsql_add ('+' decided per row). Returns false when SQLite refuses.
bool registerTsqlFunctions(sqlite3 *db);

} // namespace quorvale
