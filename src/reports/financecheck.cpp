#include "reports/financecheck.h"

#include "reports/financecontrolnames.h"
#include "reports/financereporttraits.h"
#include "reports/monthenddate.h"
#include "runtime/msgboxstyle.h"
#include "runtime/programinfo.h"
#include "runtime/vb.h"

namespace quorvale {

namespace {

const QString kMonthMessage = QStringLiteral("请输入统计年月！");
const QString kMonthTitle = QStringLiteral("提醒");
const QString kRangeMessage = QStringLiteral("起始年月不能大于截止年月，请重新输入！");
const QString kRangeTitle = QStringLiteral("提醒！");
const QString kCutOffMessage = QStringLiteral("日期格式不正确，请重新输入日期！");
const QString kReceiptRangeMessage =
    QStringLiteral("收款日期起始日期不能大于终止日期，请重新选择！");
// Information icon plus the critical one: the receipt-range box was designed so.
constexpr int kReceiptRangeStyle = 80;

FinanceCheck refuse(const QString &message, int style, const QString &title,
                    const QString &focus = QString())
{
    return {FinanceCheck::Outcome::Refuse, message, style, title, focus};
}

} // namespace

FinanceCheck checkFinanceInput(FinanceReportKind kind, const ReportParams &params)
{
    if (params.feeCodeList.isEmpty())
        return {FinanceCheck::Outcome::SilentStop, {}, 0, {}, {}};

    if (!params.monthRange) {
        if (!isValidMonthText(params.month))
            return refuse(kMonthMessage, vb::OKOnly, kMonthTitle, financecontrol::Text1);
    } else {
        if (!isValidMonthText(params.firstMonth))
            return refuse(kMonthMessage, vb::OKOnly, kMonthTitle, financecontrol::Text3);
        if (!isValidMonthText(params.lastMonth))
            return refuse(kMonthMessage, vb::OKOnly, kMonthTitle, financecontrol::Text4);
        if (vbrt::Val(params.firstMonth) > vbrt::Val(params.lastMonth))
            return refuse(kRangeMessage, vb::Information, kRangeTitle);
    }

    if (financeTraits(kind).advance) {
        // The picker range is checked in the cut-off mode, not in the range
        // mode that uses it: the pairing is the designed one.
        if (!params.receiptRange && params.receiptFrom > params.receiptTo)
            return refuse(kReceiptRangeMessage, kReceiptRangeStyle, exeName());
    } else if (!vbrt::IsDate(vbrt::Trim(params.receiptCutOffText))) {
        return refuse(kCutOffMessage, vb::OKOnly, QString(), financecontrol::Text2);
    }
    return {};
}

} // namespace quorvale
