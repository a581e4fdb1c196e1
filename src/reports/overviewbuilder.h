#pragma once

#include "output/officeoverview.h"
#include "reports/financereportkind.h"

#include <QHash>

namespace quorvale {

class ReportTable;

// Adds one finance report's table at a time (the tables of a run are
// released one after the other) and gives the overview at the end.
class OverviewBuilder {
  public:
    // `month`: the month the ages count to, "YYYYMM" (the last of a range).
    OverviewBuilder(QString officeCode, QString officeName, QString month);

    void add(FinanceReportKind kind, const ReportTable &table);
    OfficeOverview result(const QStringList &headingLines) const;

  private:
    struct Item {
        ArrearsLine arrears;
        QHash<QString, bool> places;
    };
    // Rooms or spaces count once in a sum however many fee items they owe.
    struct Place {
        QString firstMonth;
        int entries = 0;
        Amount amount;
        int order = 0;
    };
    void addArrears(bool parking, const QStringList &row);
    void addAdvance(bool parking, const QStringList &row);

    QString m_officeCode, m_officeName;
    int m_monthIndex = 0;
    QList<Item> m_arrears[2]; // property, parking
    QHash<QString, bool> m_blockPlaces[2];
    QList<AdvanceLine> m_advance[2];
    QList<AgeLine> m_ages;
    QHash<QString, Place> m_places;
    bool m_hasArrears = false, m_hasAdvance = false;
};

} // namespace quorvale
