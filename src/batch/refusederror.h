#pragma once

#include <QString>
#include <stdexcept>

namespace quorvale {

// A request the system refuses as the windows would: a sign-in, an office or
// an input the window's checks turn down. Reported with exit status 3.
class RefusedError : public std::runtime_error {
  public:
    explicit RefusedError(const QString &message)
        : std::runtime_error(message.toStdString()), m_message(message)
    {
    }
    const QString &message() const { return m_message; }

  private:
    QString m_message;
};

} // namespace quorvale
