#pragma once

#include "runtime/toplevelhandler.h"
#include "session/dbconnection.h"
#include "session/frmlogin.h"
#include "session/mdiform1.h"
#include "session/sessionvalues.h"
#include "ui/msgbox.h"

#include <QCoreApplication>
#include <QEvent>
#include <gtest/gtest.h>
#include <vector>

namespace quorvale {

// Records every message box and every attempt to end the program, and
// leaves no window or connection behind for the next test.
class SessionTest : public ::testing::Test {
  protected:
    void SetUp() override
    {
        setMsgBoxResponder([this](const MsgBoxCall &call) {
            boxes.push_back(call);
            return answer;
        });
        setEndProgramHook([this](int status) { ends.push_back(status); });
        for (QString *value : {&CurUserNo, &CurUserName, &CurDeptCode, &CurDeptName, &CurPostCode,
                               &CurPostName, &CurDeptClassCode, &CurDeptClassName,
                               &CurPostClassCode, &CurPostClassName, &StartupArgs})
            value->clear();
        HasProjectAudit = false;
    }

    void TearDown() override
    {
        delete MdiForm1::instance();
        delete FrmLogin::instance();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        DbConn.reset();
        DbConnString.clear();
        setMsgBoxResponder({});
        setEndProgramHook({});
    }

    std::vector<MsgBoxCall> boxes;
    std::vector<int> ends;
    int answer = vb::OK;
};

} // namespace quorvale
