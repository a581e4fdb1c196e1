#pragma once

namespace quorvale {

struct Session;

// The login window's connect step: reads the four database settings and
// gives the session a fresh connection (the previous one is released, not
// closed first). A failed open is not turned into False: the RuntimeError
// travels out to the caller; the caller says "数据库连接失败!" on False.
bool ConnectDatabase(Session &session);

} // namespace quorvale
