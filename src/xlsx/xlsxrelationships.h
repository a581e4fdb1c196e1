#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace quorvale::xlsx {

// One relationship of a part, its target resolved to a part name (or left
// as written when it points outside the package).
struct Relationship {
    QString id, type, target;
    bool external = false;
    // The type's last segment ("worksheet", "table"), the same in both vocabularies.
    bool isOfType(QLatin1StringView name) const { return type.endsWith(u'/' + QString(name)); }
};

// The relationships part that belongs to a part: "xl/_rels/workbook.xml.rels".
QString relationshipsPartOf(const QString &part);
// A target relative to the folder of the part that owns it, or absolute.
QString resolveTarget(const QString &ownerPart, const QString &target);
// The relationships listed in a relationships part; ok is false for malformed XML.
std::vector<Relationship> readRelationships(const QByteArray &xml, const QString &ownerPart,
                                            bool &ok);

} // namespace quorvale::xlsx
