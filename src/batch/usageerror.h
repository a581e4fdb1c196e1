#pragma once

#include "base/error.h"

namespace quorvale {

// A command line quorvale-admin cannot act on; reported with exit status 2.
class UsageError : public Error {
  public:
    explicit UsageError(const QString &message) : Error(message) {}
    const QString &message() const { return text(); }
};

} // namespace quorvale
