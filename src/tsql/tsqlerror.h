#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

namespace quorvale {

// What the engine raises for a statement it cannot translate or a value it
// cannot convert, worded as the server would word it. The database layer
// turns it into the program's own error.
class TsqlError : public std::exception {
  public:
    explicit TsqlError(QString message)
        : m_message(std::move(message)), m_utf8(m_message.toUtf8())
    {
    }

    const QString &message() const { return m_message; }
    const char *what() const noexcept override { return m_utf8.constData(); }

  private:
    QString m_message;
    QByteArray m_utf8;
};

} // namespace quorvale
