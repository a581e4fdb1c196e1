#pragma once

#include "output/officeoverview.h"
#include "reports/financereportkind.h"

#include <QHash>
#include <QStringView>
#include <memory>
#include <vector>

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
    // Rooms or spaces count once in a sum however many fee items they owe;
    // each is known by its number in the order it first owes.
    struct Item {
        ArrearsLine arrears;
        std::vector<bool> places; // by place number
    };
    // Places' names in large blocks: an office's hundred thousand rooms
    // would otherwise be as many small allocations held through the run.
    class NameStore {
      public:
        QStringView add(const QString &name);

      private:
        std::vector<std::unique_ptr<QChar[]>> m_blocks;
        qsizetype m_used = 0, m_size = 0;
    };
    struct Place {
        QStringView name;   // in m_names
        int firstMonth = 0; // month index
        int entries = 0;
        Amount amount;
    };
    int placeId(const QString &place, int month);
    // The place, fee item, amount and billing month's first day of a row.
    void addArrears(bool parking, const QString &place, const QString &feeItem,
                    const QString &amount, const QString &firstDay);
    void addAdvance(bool parking, const QString &feeItem, const QString &amount,
                    const QString &firstDay);

    QString m_officeCode, m_officeName;
    int m_monthIndex = 0;
    QList<Item> m_arrears[2]; // property, parking
    std::vector<bool> m_blockPlaces[2];
    QList<AdvanceLine> m_advance[2];
    QList<AgeLine> m_ages;
    NameStore m_names;
    QHash<QStringView, int> m_placeIds;
    std::vector<Place> m_places;
    int m_lastPlace = -1; // a room's rows follow each other
    bool m_hasArrears = false, m_hasAdvance = false;
};

} // namespace quorvale
