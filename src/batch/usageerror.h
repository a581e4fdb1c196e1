#pragma once

#include "base/error.h"

namespace quorvale {

// A command line quorvale-admin cannot act on; reported with exit status 2.
class UsageError : public Error {
  public:
    using Error::Error;
};

} // namespace quorvale
