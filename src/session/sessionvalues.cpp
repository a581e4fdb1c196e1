#include "session/sessionvalues.h"

namespace quorvale {

QString CurUserNo;
QString CurUserName;
QString CurDeptCode;
QString CurDeptName;
QString CurPostCode;
QString CurPostName;
QString CurDeptClassCode;
QString CurDeptClassName;
QString CurPostClassCode;
QString CurPostClassName;
bool HasProjectAudit = false;
QString StartupArgs;

} // namespace quorvale
