#pragma once

#include "reports/financereportkind.h"

#include <QStringList>
#include <memory>

namespace quorvale {

class Recordset;

// Writes one finance grid row from the current record, the same way for all
// four reports: 0 place ("office->address->unit" or "office->car park->
// space"), 1 "业主", 2 house nature (property only), 3 and 4 the fee name,
// 5 the amount, 6 the month's first day, 7 its last, 8 the first day again,
// 9 the amount; the advance-receipt reports add 12 amount, 13 receipt date,
// 14 payment method, 15 invoice number. Against the headings most values
// stand one column right of their caption; that placement is the design.
// Columns the grid does not have are not written.
class FinanceRowBuilder {
  public:
    explicit FinanceRowBuilder(FinanceReportKind kind);

    void operator()(const Recordset &record, QStringList &row);

  private:
    struct Columns;
    FinanceReportKind m_kind;
    std::shared_ptr<Columns> m_columns; // resolved on the first record
};

} // namespace quorvale
