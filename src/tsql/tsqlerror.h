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
    explicit TsqlError(QString message, int position = 0)
        : m_message(std::move(message)), m_utf8(m_message.toUtf8()), m_position(position)
    {
    }

    const QString &message() const { return m_message; }
    // 1-based character position in the statement text; 0 when the error has none.
    int position() const { return m_position; }
    const char *what() const noexcept override { return m_utf8.constData(); }

  private:
    QString m_message;
    QByteArray m_utf8;
    int m_position = 0;
};

} // namespace quorvale
