#include "base/error.h"

namespace quorvale {

Error::Error(QString text) : m_text(std::move(text)), m_utf8(m_text.toUtf8()) {}

} // namespace quorvale
