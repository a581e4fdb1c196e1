#include "reports/overviewbuilder.h"

#include "reports/financereporttraits.h"
#include "table/reporttable.h"

#include <algorithm>

namespace quorvale {

namespace {

// Where the four finance reports put what the overview reads: they share
// one row filling, whatever their headings say.
constexpr int PlaceColumn = 0, FeeItemColumn = 3, AmountColumn = 5, MonthColumn = 6;
constexpr int LargestCount = 10;
const char *const BlockCaptions[] = {"房产小计", "车位小计"};

// "2024-03-01" → "202403".
QString monthOf(const QString &firstDay)
{
    return firstDay.left(4) + firstDay.mid(5, 2);
}

int monthIndex(const QString &yyyymm)
{
    return yyyymm.left(4).toInt() * 12 + yyyymm.mid(4, 2).toInt() - 1;
}

int ageBucket(int monthsOverdue)
{
    if (monthsOverdue <= 0)
        return 0;
    if (monthsOverdue <= 3)
        return 1;
    if (monthsOverdue <= 6)
        return 2;
    if (monthsOverdue <= 12)
        return 3;
    return 4;
}

template <typename Line> Line &lineFor(QList<Line> &lines, const QString &feeItem)
{
    for (Line &line : lines)
        if (line.feeItem == feeItem)
            return line;
    lines.append(Line{});
    lines.last().feeItem = feeItem;
    return lines.last();
}

void widenMonths(AdvanceLine &line, const QString &month)
{
    if (line.firstMonth.isEmpty() || month < line.firstMonth)
        line.firstMonth = month;
    if (month > line.lastMonth)
        line.lastMonth = month;
}

void addInto(AdvanceLine &sum, const AdvanceLine &line)
{
    sum.entries += line.entries;
    sum.amount += line.amount;
    if (!line.firstMonth.isEmpty()) {
        widenMonths(sum, line.firstMonth);
        widenMonths(sum, line.lastMonth);
    }
}

void addInto(ArrearsLine &sum, const ArrearsLine &line)
{
    sum.places += line.places;
    sum.entries += line.entries;
    sum.receivable += line.receivable;
    sum.reductions += line.reductions;
}

} // namespace

OverviewBuilder::OverviewBuilder(QString officeCode, QString officeName, QString month)
    : m_officeCode(std::move(officeCode)), m_officeName(std::move(officeName)),
      m_monthIndex(monthIndex(month))
{
    for (const char *label : {"当月", "1-3个月", "4-6个月", "7-12个月", "12个月以上"})
        m_ages.append(AgeLine{QString::fromUtf8(label), 0, {}});
}

void OverviewBuilder::add(FinanceReportKind kind, const ReportTable &table)
{
    const FinanceReportTraits &traits = financeTraits(kind);
    QStringList row;
    for (int r = table.fixedRows(); r < table.rows(); ++r) {
        table.readRow(r, row);
        if (traits.advance)
            addAdvance(traits.parking, row);
        else
            addArrears(traits.parking, row);
    }
    (traits.advance ? m_hasAdvance : m_hasArrears) = true;
}

void OverviewBuilder::addArrears(bool parking, const QStringList &row)
{
    const QString place = row.value(PlaceColumn);
    const QString month = monthOf(row.value(MonthColumn));
    const Amount amount = Amount::parse(row.value(AmountColumn));

    QList<Item> &items = m_arrears[parking ? 1 : 0];
    auto found = std::find_if(items.begin(), items.end(), [&](const Item &item) {
        return item.arrears.feeItem == row.value(FeeItemColumn);
    });
    if (found == items.end()) {
        items.append(Item{});
        items.last().arrears.feeItem = row.value(FeeItemColumn);
        found = items.end() - 1;
    }
    m_blockPlaces[parking ? 1 : 0].insert(place, true);
    ArrearsLine &line = found->arrears;
    ++line.entries;
    line.receivable += amount;
    if (!found->places.contains(place)) {
        found->places.insert(place, true);
        ++line.places;
    }

    AgeLine &age = m_ages[ageBucket(m_monthIndex - monthIndex(month))];
    ++age.entries;
    age.amount += amount;

    // The same place may owe in both blocks (a space rented out and owned).
    const bool first = !m_places.contains(place);
    Place &p = m_places[place];
    if (first)
        p.order = int(m_places.size());
    ++p.entries;
    p.amount += amount;
    if (p.firstMonth.isEmpty() || month < p.firstMonth)
        p.firstMonth = month;
}

void OverviewBuilder::addAdvance(bool parking, const QStringList &row)
{
    AdvanceLine &line = lineFor(m_advance[parking ? 1 : 0], row.value(FeeItemColumn));
    ++line.entries;
    line.amount += Amount::parse(row.value(AmountColumn));
    widenMonths(line, monthOf(row.value(MonthColumn)));
}

OfficeOverview OverviewBuilder::result(const QStringList &headingLines) const
{
    OfficeOverview o;
    o.officeCode = m_officeCode;
    o.officeName = m_officeName;
    o.headingLines = headingLines;
    o.hasArrears = m_hasArrears;
    o.hasAdvance = m_hasAdvance;

    ArrearsBlock *arrears[] = {&o.propertyArrears, &o.parkingArrears};
    for (int b = 0; b < 2; ++b) {
        arrears[b]->subtotal.feeItem = QString::fromUtf8(BlockCaptions[b]);
        for (const Item &item : m_arrears[b]) {
            arrears[b]->lines << item.arrears;
            addInto(arrears[b]->subtotal, item.arrears);
        }
        arrears[b]->subtotal.places = int(m_blockPlaces[b].size());
        addInto(o.totalArrears, arrears[b]->subtotal);
    }
    o.totalArrears.feeItem = QStringLiteral("合计");
    // A place owing in both blocks is one place in the total.
    o.totalArrears.places = int(m_places.size());

    o.ages = m_ages;

    QList<std::pair<QString, Place>> places;
    places.reserve(m_places.size());
    for (auto it = m_places.cbegin(); it != m_places.cend(); ++it)
        places.append({it.key(), it.value()});
    const auto largestFirst = [](const auto &a, const auto &b) {
        if (!(a.second.amount == b.second.amount))
            return b.second.amount < a.second.amount;
        return a.second.order < b.second.order; // ties in report order
    };
    const qsizetype kept = std::min<qsizetype>(LargestCount, places.size());
    std::partial_sort(places.begin(), places.begin() + kept, places.end(), largestFirst);
    for (qsizetype i = 0; i < kept; ++i)
        o.largest << LargestPlace{places[i].first, places[i].second.firstMonth,
                                  places[i].second.entries, places[i].second.amount};

    AdvanceBlock *advance[] = {&o.propertyAdvance, &o.parkingAdvance};
    for (int b = 0; b < 2; ++b) {
        advance[b]->subtotal.feeItem = QString::fromUtf8(BlockCaptions[b]);
        advance[b]->lines = m_advance[b];
        for (const AdvanceLine &line : m_advance[b])
            addInto(advance[b]->subtotal, line);
        addInto(o.totalAdvance, advance[b]->subtotal);
    }
    o.totalAdvance.feeItem = QStringLiteral("合计");
    return o;
}

} // namespace quorvale
