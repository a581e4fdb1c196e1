#pragma once

#include <QString>

namespace quorvale {

// One post offered in the login window's list: the ten session values in
// their fixed order.
struct PostChoice {
    QString userNo;
    QString userName;
    QString deptCode;
    QString deptName;
    QString postCode;
    QString postName;
    QString deptClassCode;
    QString deptClassName;
    QString postClassCode;
    QString postClassName;
};

} // namespace quorvale
