#pragma once

#include "runtime/toplevelhandler.h"
#include "session/dbconnection.h"
#include "session/windows/frmlogin.h"
#include "session/windows/mdiform1.h"
#include "support/fixturedb.h"
#include "support/toplevelwindow.h"
#include "ui/desktop.h"

#include <QCoreApplication>
#include <QDate>
#include <QEvent>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace quorvale {

// Its windows' desktop records every message box and every attempt to end
// the program; no window or connection is left behind for the next test.
class SessionTest : public ::testing::Test {
  protected:
    void SetUp() override
    {
        desktop->answerBox = [this](const MsgBoxCall &call) {
            boxes.push_back(call);
            return answer;
        };
        desktop->endProgram = [this](int status) { ends.push_back(status); };
    }

    void TearDown() override
    {
        delete quorvale::testing::topLevelWindow<MdiForm1>();
        delete quorvale::testing::topLevelWindow<FrmLogin>();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::shared_ptr<Desktop> desktop = std::make_shared<Desktop>();
    std::vector<MsgBoxCall> boxes;
    std::vector<int> ends;
    int answer = vb::OK;
};

// Staff of the sign-in tests: 1001 holds two current posts and one he left,
// 1002 one post, 1003 has left the company, 1004 has no post at all. Codes
// carry trailing and names leading and trailing blanks, as fixed-width
// columns return them.
inline std::unique_ptr<FixtureDb> makeStaffDb()
{
    auto db = std::make_unique<FixtureDb>();
    db->insert("职能部门类别", {{"部门类别代号", "D1 "}, {"部门类别名称", " 管理处类"}});
    db->insertRows("职能部门new", {"职能部门编号", "职能部门名称", "职能部门类别代号"},
                   {{"B01 ", "第一管理处  ", "D1"}, {"B02 ", " 财务部", "D1"}});
    db->insert("岗位类别", {{"岗位类别编号", "P1  "}, {"岗位类别名称", "管理类 "}});
    db->insertRows("岗位信息new", {"岗位代号", "岗位名称", "职能部门代号", "岗位类别代号"},
                   {{"G01 ", " 主任 ", "B01", "P1"},
                    {"G02 ", "出纳  ", "B02", "P1"},
                    {"G03", "收费员", "B01", "P1"}});
    db->insertRows("员工档案", {"工号", "姓名", "帐号密码", "离职日期"},
                   {{"1001", "张三 ", "123", QVariant()},
                    {"1002", " 李四 ", "456", QVariant()},
                    {"1003", "王五", "789", QDate(2020, 1, 1)},
                    {"1004", "赵六", "000", QVariant()}});
    db->insertRows("岗位员工new", {"员工代号", "岗位代号", "主要岗位", "离岗日期"},
                   {{"1001", "G01", true, QVariant()},
                    {"1001", "G02", QVariant(), QVariant()},
                    {"1001", "G03", false, QDate(2023, 6, 30)},
                    {"1002", "G01", true, QVariant()},
                    {"1003", "G01", true, QVariant()}});
    db->writeSettings();
    return db;
}

} // namespace quorvale
