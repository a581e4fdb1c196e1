#include "reports/financerows.h"

#include "db/recordset.h"
#include "reports/financereporttraits.h"
#include "reports/monthenddate.h"

namespace quorvale {

namespace {

const QString kPlaceSeparator = QStringLiteral("->");
const QString kPayerType = QStringLiteral("业主");
const QString kNullAmount = QStringLiteral("0");

int fieldIndex(const Recordset &record, const QString &name)
{
    for (int i = 0; i < record.fieldCount(); ++i) {
        if (record.Fields(i).name().compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    (void)record.Fields(name); // an unknown name raises the recordset's own error
    return -1;
}

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
        c->officeName = fieldIndex(record, QStringLiteral("GYD_Name"));
        c->place1 =
            fieldIndex(record, traits.parking ? QStringLiteral("车库名") : QStringLiteral("DZ"));
        c->place2 =
            fieldIndex(record, traits.parking ? QStringLiteral("车位编号") : QStringLiteral("室"));
        if (!traits.parking)
            c->nature = fieldIndex(record, QStringLiteral("FWXZ_xz"));
        c->feeName = fieldIndex(record, QStringLiteral("XM"));
        c->amount = fieldIndex(record, QStringLiteral("ZJ_JE"));
        c->month = fieldIndex(record, QStringLiteral("ZJ_CNY"));
        if (traits.advance) {
            c->receiptDate = fieldIndex(record, QStringLiteral("zj_skrq"));
            c->paymentMethod = fieldIndex(record, QStringLiteral("收款方式"));
            c->invoice = fieldIndex(record, QStringLiteral("发票号码"));
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
