#include "reports/windows/reportwindows.h"

#include "reports/windows/frm收款日报表.h"
#include "reports/windows/frm财务数据欠收表房产.h"
#include "reports/windows/frm财务数据欠收表车位.h"
#include "reports/windows/frm财务数据预收表房产.h"
#include "reports/windows/frm财务数据预收表车位.h"
#include "reports/windows/frm车位基础表.h"

namespace quorvale {

namespace {

template <typename Window>
QWidget *openReportWindow(const SessionPtr &session, const DesktopPtr &desktop)
{
    auto *window = new Window(session, desktop);
    window->load();
    return window;
}

} // namespace

QHash<QString, std::function<QWidget *(const SessionPtr &session, const DesktopPtr &desktop)>>
reportWindowFactories()
{
    return {
        {QStringLiteral("房产客户"), openReportWindow<frm收款日报表>},
        {QStringLiteral("车位客户"), openReportWindow<frm车位基础表>},
        {QStringLiteral("财务数据欠收表房产"), openReportWindow<frm财务数据欠收表房产>},
        {QStringLiteral("财务数据欠收表车位"), openReportWindow<frm财务数据欠收表车位>},
        {QStringLiteral("财务数据预收表车位"), openReportWindow<frm财务数据预收表车位>},
        {QStringLiteral("财务数据预收表房产"), openReportWindow<frm财务数据预收表房产>},
    };
}

} // namespace quorvale
