#pragma once

#include "db/connection.h"
#include "reports/financereportkind.h"

#include <QString>
#include <QStringList>

namespace quorvale {

// The current fee items of one category, as a finance window loads them once:
// the Combo3 entries ("DH XM") and the quoted code list for the query's
// IN (...), e.g. '01','02','07'; empty when the category has no current item.
class FeeCodeList {
  public:
    // The fee-item statement of the category, exactly as the window runs it.
    static QString statement(FeeCategory category);
    // Reads the items of the category on the connection.
    static FeeCodeList load(FeeCategory category, const ConnectionPtr &connection);

    // Adds one item in query order; a quote in a code is doubled in the list.
    void add(const QString &code, const QString &name);

    const QStringList &entries() const { return m_entries; }
    const QString &text() const { return m_text; }
    bool isEmpty() const { return m_text.isEmpty(); }

  private:
    QStringList m_entries;
    QString m_text;
};

} // namespace quorvale
