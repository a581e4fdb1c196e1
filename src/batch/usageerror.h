#pragma once

#include <QString>
#include <stdexcept>

namespace quorvale {

// A command line quorvale-admin cannot act on; reported with exit status 2.
class UsageError : public std::runtime_error {
  public:
    explicit UsageError(const QString &message)
        : std::runtime_error(message.toStdString()), m_message(message)
    {
    }
    const QString &message() const { return m_message; }

  private:
    QString m_message;
};

} // namespace quorvale
