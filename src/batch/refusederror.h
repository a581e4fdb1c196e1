#pragma once

#include "base/error.h"

namespace quorvale {

// A request the system refuses as the windows would: a sign-in, an office or
// an input the window's checks turn down. Reported with exit status 3.
class RefusedError : public Error {
  public:
    explicit RefusedError(const QString &message) : Error(message) {}
    const QString &message() const { return text(); }
};

} // namespace quorvale
