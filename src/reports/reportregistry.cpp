#include "reports/reportregistry.h"

#include "reports/frm收款日报表.h"
#include "reports/frm车位基础表.h"
#include "session/mdiform1.h"

namespace quorvale {

namespace {

template <typename Window> QWidget *openReportWindow()
{
    auto *window = new Window;
    window->load();
    return window;
}

} // namespace

void registerReportWindows()
{
    registerWindowFactory(QStringLiteral("房产客户"), openReportWindow<frm收款日报表>);
    registerWindowFactory(QStringLiteral("车位客户"), openReportWindow<frm车位基础表>);
}

} // namespace quorvale
