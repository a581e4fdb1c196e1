#pragma once

#include "db/connection.h"
#include "db/field.h"

#include <QString>
#include <memory>

namespace quorvale {

// Forward-only, read-only recordset with the ADO shape the windows use.
// (EOF is a C macro, hence eof().)
class Recordset {
public:
    Recordset();
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    // cursorType 0 = forward-only, lockType 1 = read-only, options -1 =
    // unspecified; other cursor or lock types are refused. Throws
    // RuntimeError with the driver's (or the dialect adapter's) text.
    void Open(const QString &source, const ConnectionPtr &connection, int cursorType = 0,
              int lockType = 1, int options = -1);
    bool eof() const;
    void MoveNext();
    void Close();

    int fieldCount() const;
    // Name lookup ignores case; an unknown name throws error 3265.
    Field Fields(const QString &name) const;
    // The position of the named field, for reading it by position row after row.
    int fieldIndex(const QString &name) const;
    Field Fields(int index) const;
    QString source() const;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace quorvale
