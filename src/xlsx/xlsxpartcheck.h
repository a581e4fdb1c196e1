#pragma once

#include <QByteArray>
#include <QString>

namespace quorvale::xlsx {

// A part the editor reads or rewrites is refused when it is not what it
// claims to be, so a damaged workbook is never "repaired" into an
// unreadable one. The message names the workbook and the part.
[[noreturn]] void damagedPart(const QString &path, const QString &part, const QString &why);

// Checks that the part's tags are complete and balanced under one root
// element with the given local name; returns the number of that root's
// children named `child` (empty `child`: 0).
int checkPart(const QString &path, const QString &part, const QByteArray &xml,
              QByteArrayView root, QByteArrayView child = {});

} // namespace quorvale::xlsx
