#include "reports/overviewbuilder.h"

#include "reports/financereporttraits.h"
#include "table/reporttable.h"

#include <algorithm>
#include <numeric>

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

QString monthText(int index)
{
    return QStringLiteral("%1%2").arg(index / 12).arg(index % 12 + 1, 2, 10, QLatin1Char('0'));
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
    // Four cells of each row, each read on its own: a whole row costs more.
    for (int r = table.fixedRows(); r < table.rows(); ++r) {
        if (traits.advance)
            addAdvance(traits.parking, table.text(r, FeeItemColumn), table.text(r, AmountColumn),
                       table.text(r, MonthColumn));
        else
            addArrears(traits.parking, table.text(r, PlaceColumn), table.text(r, FeeItemColumn),
                       table.text(r, AmountColumn), table.text(r, MonthColumn));
    }
    (traits.advance ? m_hasAdvance : m_hasArrears) = true;
}

namespace {

// Marks the place in a set kept as bits by place number; true when it was new.
bool markPlace(std::vector<bool> &places, int id)
{
    if (size_t(id) >= places.size())
        places.resize(size_t(id) + 1);
    if (places[size_t(id)])
        return false;
    places[size_t(id)] = true;
    return true;
}

} // namespace

void OverviewBuilder::addArrears(bool parking, const QString &place, const QString &feeItem,
                                 const QString &amountText, const QString &firstDay)
{
    const int months = monthIndex(monthOf(firstDay));
    const Amount amount = Amount::parse(amountText);

    // The same place may owe in both blocks (a space rented out and owned).
    const int id = placeId(place, months);
    Place &p = m_places[size_t(id)];
    ++p.entries;
    p.amount += amount;
    p.firstMonth = std::min(p.firstMonth, months);

    QList<Item> &items = m_arrears[parking ? 1 : 0];
    auto found = std::find_if(items.begin(), items.end(),
                              [&](const Item &item) { return item.arrears.feeItem == feeItem; });
    if (found == items.end()) {
        items.append(Item{});
        items.last().arrears.feeItem = feeItem;
        found = items.end() - 1;
    }
    markPlace(m_blockPlaces[parking ? 1 : 0], id);
    ArrearsLine &line = found->arrears;
    ++line.entries;
    line.receivable += amount;
    if (markPlace(found->places, id))
        ++line.places;

    AgeLine &age = m_ages[ageBucket(m_monthIndex - months)];
    ++age.entries;
    age.amount += amount;
}

void OverviewBuilder::addAdvance(bool parking, const QString &feeItem, const QString &amountText,
                                 const QString &firstDay)
{
    AdvanceLine &line = lineFor(m_advance[parking ? 1 : 0], feeItem);
    ++line.entries;
    line.amount += Amount::parse(amountText);
    widenMonths(line, monthOf(firstDay));
}

int OverviewBuilder::placeId(const QString &place, int month)
{
    if (m_lastPlace >= 0 && m_places[size_t(m_lastPlace)].name == place)
        return m_lastPlace;
    const auto known = m_placeIds.constFind(place);
    if (known != m_placeIds.cend())
        return m_lastPlace = known.value();
    m_lastPlace = int(m_places.size());
    const QStringView kept = m_names.add(place);
    m_placeIds.insert(kept, m_lastPlace);
    m_places.push_back(Place{kept, month, 0, {}});
    return m_lastPlace;
}

QStringView OverviewBuilder::NameStore::add(const QString &name)
{
    constexpr qsizetype BlockSize = 64 * 1024;
    if (m_used + name.size() > m_size) {
        m_size = std::max(BlockSize, name.size());
        m_blocks.push_back(std::make_unique<QChar[]>(size_t(m_size)));
        m_used = 0;
    }
    QChar *at = m_blocks.back().get() + m_used;
    std::copy(name.begin(), name.end(), at);
    m_used += name.size();
    return QStringView(at, name.size());
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
        arrears[b]->subtotal.places =
            int(std::count(m_blockPlaces[b].begin(), m_blockPlaces[b].end(), true));
        addInto(o.totalArrears, arrears[b]->subtotal);
    }
    o.totalArrears.feeItem = QStringLiteral("合计");
    // A place owing in both blocks is one place in the total.
    o.totalArrears.places = int(m_places.size());

    o.ages = m_ages;

    std::vector<int> order(m_places.size());
    std::iota(order.begin(), order.end(), 0);
    const auto largestFirst = [this](int a, int b) {
        if (!(m_places[a].amount == m_places[b].amount))
            return m_places[b].amount < m_places[a].amount;
        return a < b; // ties in report order
    };
    const auto kept = std::min<std::ptrdiff_t>(LargestCount, std::ptrdiff_t(order.size()));
    std::partial_sort(order.begin(), order.begin() + kept, order.end(), largestFirst);
    for (std::ptrdiff_t i = 0; i < kept; ++i) {
        const Place &p = m_places[order[i]];
        o.largest << LargestPlace{p.name.toString(), monthText(p.firstMonth), p.entries, p.amount};
    }

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
