#include "reports/financerows.h"

#include "db/recordset.h"
#include "reports/financereporttraits.h"
#include "reports/monthenddate.h"

namespace quorvale {

namespace {

const QString kPlaceSeparator = QStringLiteral("->");
const QString kPayerType = QStringLiteral("业主");
const QString kNullAmount = QStringLiteral("0");

} // namespace

// Field positions, looked up once per statement rather than by name per cell.
struct FinanceRowBuilder::Columns {
    int officeName, place1, place2, nature = -1, feeName, amount, month;
    int receiptDate = -1, paymentMethod = -1, invoice = -1;
};

FinanceRowBuilder::FinanceRowBuilder(FinanceReportKind kind) : m_kind(kind) {}

void FinanceRowBuilder::operator()(const Recordset &record, QStringList &row)
{
    const FinanceReportTraits &traits = financeTraits(m_kind);
    if (!m_columns) {
        auto c = std::make_shared<Columns>();
        c->officeName = record.fieldIndex(QStringLiteral("GYD_Name"));
        c->place1 =
            record.fieldIndex(traits.parking ? QStringLiteral("车库名") : QStringLiteral("DZ"));
        c->place2 =
            record.fieldIndex(traits.parking ? QStringLiteral("车位编号") : QStringLiteral("室"));
        if (!traits.parking)
            c->nature = record.fieldIndex(QStringLiteral("FWXZ_xz"));
        c->feeName = record.fieldIndex(QStringLiteral("XM"));
        c->amount = record.fieldIndex(QStringLiteral("ZJ_JE"));
        c->month = record.fieldIndex(QStringLiteral("ZJ_CNY"));
        if (traits.advance) {
            c->receiptDate = record.fieldIndex(QStringLiteral("zj_skrq"));
            c->paymentMethod = record.fieldIndex(QStringLiteral("收款方式"));
            c->invoice = record.fieldIndex(QStringLiteral("发票号码"));
        }
        m_columns = std::move(c);
    }
    const Columns &c = *m_columns;
    const auto text = [&record](int index) { return record.Fields(index).text(); };
    const auto put = [&row](int col, const QString &value) {
        if (col < row.size())
            row[col] = value;
    };

    QString amount = text(c.amount);
    if (amount.isEmpty())
        amount = kNullAmount;
    const QString month = text(c.month);
    const QString firstDay = monthFirstDay(month);
    const QString feeName = text(c.feeName);

    put(0,
        text(c.officeName) + kPlaceSeparator + text(c.place1) + kPlaceSeparator + text(c.place2));
    put(1, kPayerType);
    if (c.nature >= 0)
        put(2, text(c.nature));
    put(3, feeName);
    put(4, feeName);
    put(5, amount);
    put(6, firstDay);
    put(7, MonthEndDate(month));
    put(8, firstDay);
    put(9, amount);
    if (traits.advance) {
        put(12, amount);
        put(13, text(c.receiptDate));
        put(14, text(c.paymentMethod));
        put(15, text(c.invoice));
    }
}

} // namespace quorvale
