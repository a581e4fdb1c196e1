#pragma once

#include "tsql/fieldkind.h"

#include <QString>
#include <QVariant>

namespace quorvale {

// What a server driver's column type holds, for Field::text().
FieldKind fieldKindOfMetaType(int typeId);

class Field {
public:
    Field() = default;
    Field(QString name, QVariant value, FieldKind kind)
        : m_name(std::move(name)), m_value(std::move(value)), m_kind(kind)
    {
    }

    const QString &name() const { return m_name; }
    const QVariant &Value() const { return m_value; }
    FieldKind kind() const { return m_kind; }
    bool isNull() const { return m_value.isNull(); }

    // NULL -> "", numbers in shortest decimal form (85.5, 120), datetimes as
    // yyyy-MM-dd at midnight else yyyy-MM-dd HH:mm:ss, bits as 0/1.
    QString text() const;
    // NULL is false, as a flag's NULL counts as 0: a NULL privilege grants
    // nothing and a NULL main-post mark is not the main post.
    bool toBool() const;

private:
    QString m_name;
    QVariant m_value;
    FieldKind m_kind = FieldKind::Text;
};

} // namespace quorvale
