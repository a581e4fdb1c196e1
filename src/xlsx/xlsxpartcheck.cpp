#include "xlsx/xlsxpartcheck.h"

#include "xlsx/xlsxerror.h"
#include "xlsx/xlsxpackage.h"
#include "xlsx/xlsxxmltext.h"

#include <algorithm>
#include <vector>

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
    // A tag scan rather than a full parser: shared-string tables run to tens
    // of megabytes, and balanced, well-named tags are what the editor relies on.
    const auto fail = [&](qsizetype at, const QString &why) {
        const qsizetype line = QByteArrayView(xml).first(std::min(at, xml.size())).count('\n') + 1;
        damagedPart(path, part, QStringLiteral("第 %1 行：%2").arg(line).arg(why));
    };
    std::vector<QByteArrayView> open;
    int children = 0;
    bool sawRoot = false;
    qsizetype pos = 0;
    XmlTag tag;
    while (XmlText::nextTag(xml, pos, tag)) {
        pos = tag.end;
        if (tag.name.isEmpty() || tag.end <= tag.begin || xml.at(tag.end - 1) != '>')
            fail(tag.begin, QStringLiteral("标记不完整"));
        if (tag.closing) {
            if (open.empty() || open.back() != tag.name)
                fail(tag.begin, QStringLiteral("结束标记 %1 与开始标记不符")
                                    .arg(QString::fromUtf8(tag.name)));
            open.pop_back();
            continue;
        }
        if (open.empty()) {
            if (sawRoot)
                fail(tag.begin, QStringLiteral("根元素之后还有元素"));
            if (tag.localName() != root)
                fail(tag.begin, QStringLiteral("根元素是 %1，应为 %2")
                                    .arg(QString::fromUtf8(tag.localName()),
                                         QString::fromLatin1(root.data(), root.size())));
            sawRoot = true;
        } else if (open.size() == 1 && !child.isEmpty() && tag.localName() == child) {
            ++children;
        }
        if (!tag.selfClosing)
            open.push_back(tag.name);
    }
    if (!sawRoot)
        damagedPart(path, part, QStringLiteral("内容为空"));
    if (!open.empty())
        fail(xml.size(), QStringLiteral("元素 %1 没有结束").arg(QString::fromUtf8(open.back())));
    return children;
}

} // namespace quorvale::xlsx
