#pragma once

#include "base/error.h"

namespace quorvale {

// A request the system refuses as the windows would: a sign-in, an office or
// an input the window's checks turn down. Reported with exit status 3.
class RefusedError : public Error {
  public:
    using Error::Error;
};

} // namespace quorvale
