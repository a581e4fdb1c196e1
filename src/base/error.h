#pragma once

// Library base: what every library of the program shares, and no more: the
// base of its errors. Qt Core only.

#include <QByteArray>
#include <QString>
#include <exception>

namespace quorvale {

// An error worded for the person who reads it. what() holds the same text
// in UTF-8, for the catch-alls that know only std::exception.
class Error : public std::exception {
  public:
    explicit Error(QString text);

    const QString &text() const { return m_text; }
    const char *what() const noexcept override { return m_utf8.constData(); }

  private:
    QString m_text;
    QByteArray m_utf8;
};

// An error that carries the classic number the user is shown beside its text.
class NumberedError : public Error {
  public:
    NumberedError(int number, QString description) : Error(std::move(description)), m_number(number)
    {
    }

    int number() const { return m_number; }
    const QString &description() const { return text(); }

  private:
    int m_number;
};

} // namespace quorvale
