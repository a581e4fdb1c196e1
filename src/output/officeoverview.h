#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvale {

// An amount of money exactly as the grid shows it, in ten-thousandths of a
// yuan, so that sums equal the sums of the cells however many rows there are.
class Amount {
  public:
    Amount() = default;
    // A cell's text: "1234", "-5.5", "0.0100"; anything else counts as 0.
    static Amount parse(const QString &text);
    static Amount fromUnits(qint64 units) { return Amount(units); }

    qint64 units() const { return m_units; }
    double toDouble() const { return double(m_units) / 10000; }
    // Without trailing zeros: "1234", "1234.5".
    QString toText() const;

    Amount &operator+=(Amount o)
    {
        m_units += o.m_units;
        return *this;
    }
    Amount operator-(Amount o) const { return Amount(m_units - o.m_units); }
    friend bool operator==(Amount a, Amount b) { return a.m_units == b.m_units; }
    friend bool operator<(Amount a, Amount b) { return a.m_units < b.m_units; }

  private:
    explicit Amount(qint64 units) : m_units(units) {}
    qint64 m_units = 0;
};

// Outstanding receivables of one fee item. The ledger records no reduction,
// so the reports' rows carry none and the outstanding amount is the
// receivable amount; the column is kept so the overview reads as finance
// staff expect.
struct ArrearsLine {
    QString feeItem; // the fee item's name, or the subtotal's caption
    int places = 0;  // rooms or parking spaces
    int entries = 0; // months owed (report rows)
    Amount receivable;
    Amount reductions;
    Amount outstanding() const { return receivable - reductions; }
};

struct ArrearsBlock {
    QList<ArrearsLine> lines; // in the order the items first appear
    ArrearsLine subtotal;
};

// Months overdue, counted from the month receivable to the chosen month.
struct AgeLine {
    QString label; // 当月, 1-3个月, 4-6个月, 7-12个月, 12个月以上
    int entries = 0;
    Amount amount;
};

// One room or parking space among those owing the most.
struct LargestPlace {
    QString place;      // the report's 房号 text
    QString firstMonth; // "YYYYMM" of its oldest month owed
    int entries = 0;
    Amount amount;
};

// Advance receipts of one fee item and the billing months they cover.
struct AdvanceLine {
    QString feeItem;
    int entries = 0;
    Amount amount;
    QString firstMonth, lastMonth; // "YYYYMM"
};

struct AdvanceBlock {
    QList<AdvanceLine> lines;
    AdvanceLine subtotal;
};

// The month end of one office in figures, made from the same report tables
// that the report sheets are written from.
struct OfficeOverview {
    QString officeCode, officeName;
    QStringList headingLines; // company, office, period, cut-off, date made

    ArrearsBlock propertyArrears, parkingArrears;
    ArrearsLine totalArrears;
    QList<AgeLine> ages;         // always the five, oldest last
    QList<LargestPlace> largest; // at most ten, largest first
    AdvanceBlock propertyAdvance, parkingAdvance;
    AdvanceLine totalAdvance;
    bool hasArrears = false, hasAdvance = false;
};

} // namespace quorvale
