#include "xlsx/xlsxpartcheck.h"

#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpackage.h"

#include <QXmlStreamReader>

namespace quorvale::xlsx {

void damagedPart(const QString &path, const QString &part, const QString &why)
{
    throw Error(ErrorNumber::WorkbookError,
                QStringLiteral("工作簿“%1”的部分“%2”已损坏（%3），文件未作修改")
                    .arg(Package::displayName(path), part, why));
}

int checkPart(const QString &path, const QString &part, const QByteArray &xml,
              QByteArrayView root, QByteArrayView child)
{
    QXmlStreamReader reader(xml);
    int depth = 0;
    int children = 0;
    bool sawRoot = false;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            ++depth;
            if (depth == 1) {
                if (reader.name() != QLatin1StringView(root.data(), root.size()))
                    damagedPart(path, part,
                                QStringLiteral("根元素是 %1，应为 %2")
                                    .arg(reader.name().toString(),
                                         QString::fromLatin1(root.data(), root.size())));
                sawRoot = true;
            } else if (depth == 2 && !child.isEmpty() &&
                       reader.name() == QLatin1StringView(child.data(), child.size())) {
                ++children;
            }
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    if (reader.hasError())
        damagedPart(path, part,
                    QStringLiteral("第 %1 行：%2").arg(reader.lineNumber()).arg(reader.errorString()));
    if (!sawRoot)
        damagedPart(path, part, QStringLiteral("内容为空"));
    return children;
}

} // namespace quorvale::xlsx
