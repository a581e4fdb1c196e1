#pragma once

#include "base/error.h"

#include <QString>

namespace quorvale {

// What the engine raises for a statement it cannot translate or a value it
// cannot convert, worded as the server would word it. The database layer
// turns it into the program's own error.
class TsqlError : public Error {
  public:
    explicit TsqlError(QString message, int position = 0)
        : Error(std::move(message)), m_position(position)
    {
    }

    // 1-based character position in the statement text; 0 when the error has none.
    int position() const { return m_position; }

  private:
    int m_position = 0;
};

} // namespace quorvale
