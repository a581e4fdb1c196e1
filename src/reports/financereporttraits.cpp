#include "reports/financereporttraits.h"

namespace quorvale {

namespace {

const QString kArrearsHeading = QStringLiteral(
    "房号|<收费对象类型|<收费项目|<收费标准名称|<单价|>计费周期起始日期|>计费周期结束日期|>应收"
    "日期|>应收金额|<减免金额|<减免类型|<已收金额|<缴款日期|<结算方式|<发票号码");

// The parking arrears window's designed heading; its blanks give the columns
// their first widths.
const QString kParkingArrearsHeading =
    QStringLiteral("房号") + QString(65, QLatin1Char(' ')) +
    QStringLiteral("|<收费对象类型|<收费对象客户姓名|<收费项目") + QString(9, QLatin1Char(' ')) +
    QStringLiteral("|<收费标准名称|<单价") + QString(2, QLatin1Char(' ')) +
    QStringLiteral("|<计费周期起始日期|<计费周期结束日期|<应收日期") +
    QString(10, QLatin1Char(' ')) + QStringLiteral("|>应收金额") + QString(3, QLatin1Char(' ')) +
    QStringLiteral("|<减免金额|<减免类型|<已收金额|<缴款日期") + QString(3, QLatin1Char(' ')) +
    QStringLiteral("|<结算方式") + QString(7, QLatin1Char(' ')) + QStringLiteral("|<发票号码") +
    QString(13, QLatin1Char(' '));

const QString kAdvanceHeading = QStringLiteral(
    "房号|<收费对象类型|<收费项目|<收费标准名称|<单价|<计费周期起始日期|<计费周期结束日期|<应收"
    "日期|<应收金额|<减免金额|<减免类型|<已收金额|<缴款日期|<结算方式|<发票号码|<预收款余额|<预收"
    "款收取日期|<预收款结算方式|<预收款发票号码|<收费开始日期");

const FinanceReportTraits kTraits[] = {
    {.kind = FinanceReportKind::PropertyArrears,
     .windowName = QStringLiteral("frm财务数据欠收表房产"),
     .category = FeeCategory::Property,
     .advance = false,
     .parking = false,
     .heading = kArrearsHeading,
     .headingAtLoad = true,
     .sheetName = QStringLiteral("财务房产数据欠收表"),
     .titleSuffix = QStringLiteral(" 财务房产数据欠收表"),
     .fit = ColumnFit::CurrentRow,
     .printWithPickers = false},
    {.kind = FinanceReportKind::ParkingArrears,
     .windowName = QStringLiteral("frm财务数据欠收表车位"),
     .category = FeeCategory::Parking,
     .advance = false,
     .parking = true,
     .heading = kParkingArrearsHeading,
     .headingAtLoad = false,
     .sheetName = QStringLiteral("财务车位数据欠收表"),
     .titleSuffix = QStringLiteral(" 财务车位数据欠收表"),
     .fit = ColumnFit::CurrentRow,
     .printWithPickers = false},
    {.kind = FinanceReportKind::ParkingAdvance,
     .windowName = QStringLiteral("frm财务数据预收表车位"),
     .category = FeeCategory::Parking,
     .advance = true,
     .parking = true,
     .heading = kAdvanceHeading,
     .headingAtLoad = true,
     .sheetName = QStringLiteral("财务车位数据预收表"),
     .titleSuffix = QStringLiteral(" 车位数据预收表"),
     .fit = ColumnFit::CurrentRow,
     .printWithPickers = true},
    {.kind = FinanceReportKind::PropertyAdvance,
     .windowName = QStringLiteral("frm财务数据预收表房产"),
     .category = FeeCategory::Property,
     .advance = true,
     .parking = false,
     .heading = kAdvanceHeading,
     .headingAtLoad = true,
     .sheetName = QStringLiteral("财务房产数据预收表"),
     .titleSuffix = QStringLiteral(" 财务房产数据预收表"),
     .fit = ColumnFit::NewRow,
     .printWithPickers = true},
};

} // namespace

const FinanceReportTraits &financeTraits(FinanceReportKind kind)
{
    return kTraits[static_cast<int>(kind)];
}

} // namespace quorvale
