#include "xlsx/xlsxrelationships.h"

#include <QStringList>
#include <QXmlStreamReader>

namespace quorvale::xlsx {

QString relationshipsPartOf(const QString &part)
{
    const qsizetype slash = part.lastIndexOf(u'/');
    return part.left(slash + 1) + QStringLiteral("_rels/") + part.mid(slash + 1) +
           QStringLiteral(".rels");
}

QString resolveTarget(const QString &ownerPart, const QString &target)
{
    if (target.startsWith(u'/'))
        return target.mid(1);
    const QString dir = ownerPart.left(ownerPart.lastIndexOf(u'/') + 1);
    QStringList out;
    for (const QString &p : (dir + target).split(u'/')) {
        if (p == QLatin1String(".."))
            out.isEmpty() ? void() : out.removeLast();
        else if (p != QLatin1String("."))
            out.append(p);
    }
    return out.join(u'/');
}

std::vector<Relationship> readRelationships(const QByteArray &xml, const QString &ownerPart,
                                            bool &ok)
{
    std::vector<Relationship> rels;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement &&
            reader.name() == QLatin1String("Relationship")) {
            const auto a = reader.attributes();
            Relationship rel;
            rel.id = a.value(QLatin1String("Id")).toString();
            rel.type = a.value(QLatin1String("Type")).toString();
            rel.target = a.value(QLatin1String("Target")).toString();
            rel.external = a.value(QLatin1String("TargetMode")) == QLatin1String("External");
            if (!rel.external)
                rel.target = resolveTarget(ownerPart, rel.target);
            rels.push_back(std::move(rel));
        }
    }
    ok = !reader.hasError();
    return rels;
}

} // namespace quorvale::xlsx
