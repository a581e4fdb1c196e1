#pragma once

#include <QString>

namespace quorvale {

// The ten session values, written only by the login window and read by
// everyone else; the same order is used on the command line.
extern QString CurUserNo;
extern QString CurUserName;
extern QString CurDeptCode;
extern QString CurDeptName;
extern QString CurPostCode;
extern QString CurPostName;
extern QString CurDeptClassCode;
extern QString CurDeptClassName;
extern QString CurPostClassCode;
extern QString CurPostClassName;

// True when the session's department and post hold the project-management
// audit right; decides which offices the reports list.
extern bool HasProjectAudit;

// The program's command-line text, read once when the login window loads.
extern QString StartupArgs;

} // namespace quorvale
