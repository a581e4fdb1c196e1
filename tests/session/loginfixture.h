#pragma once

#include "support/fixturedb.h"

#include <QDate>
#include <memory>

namespace quorvale {

// Staff of the sign-in tests: 1001 holds two current posts and one he left,
// 1002 one post, 1003 has left the company, 1004 has no post at all. Codes
// carry trailing and names leading and trailing blanks, as fixed-width
// columns return them.
inline std::unique_ptr<FixtureDb> makeStaffDb()
{
    auto db = std::make_unique<FixtureDb>();
    db->insert(QStringLiteral("职能部门类别"),
               {{QStringLiteral("部门类别代号"), QStringLiteral("D1 ")},
                {QStringLiteral("部门类别名称"), QStringLiteral(" 管理处类")}});
    db->insertRows(QStringLiteral("职能部门new"),
                   {QStringLiteral("职能部门编号"), QStringLiteral("职能部门名称"),
                    QStringLiteral("职能部门类别代号")},
                   {{QStringLiteral("B01 "), QStringLiteral("第一管理处  "), QStringLiteral("D1")},
                    {QStringLiteral("B02 "), QStringLiteral(" 财务部"), QStringLiteral("D1")}});
    db->insert(QStringLiteral("岗位类别"),
               {{QStringLiteral("岗位类别编号"), QStringLiteral("P1  ")},
                {QStringLiteral("岗位类别名称"), QStringLiteral("管理类 ")}});
    db->insertRows(QStringLiteral("岗位信息new"),
                   {QStringLiteral("岗位代号"), QStringLiteral("岗位名称"),
                    QStringLiteral("职能部门代号"), QStringLiteral("岗位类别代号")},
                   {{QStringLiteral("G01 "), QStringLiteral(" 主任 "), QStringLiteral("B01"),
                     QStringLiteral("P1")},
                    {QStringLiteral("G02 "), QStringLiteral("出纳  "), QStringLiteral("B02"),
                     QStringLiteral("P1")},
                    {QStringLiteral("G03"), QStringLiteral("收费员"), QStringLiteral("B01"),
                     QStringLiteral("P1")}});
    db->insertRows(
        QStringLiteral("员工档案"),
        {QStringLiteral("工号"), QStringLiteral("姓名"), QStringLiteral("帐号密码"),
         QStringLiteral("离职日期")},
        {{QStringLiteral("1001"), QStringLiteral("张三 "), QStringLiteral("123"), QVariant()},
         {QStringLiteral("1002"), QStringLiteral(" 李四 "), QStringLiteral("456"), QVariant()},
         {QStringLiteral("1003"), QStringLiteral("王五"), QStringLiteral("789"), QDate(2020, 1, 1)},
         {QStringLiteral("1004"), QStringLiteral("赵六"), QStringLiteral("000"), QVariant()}});
    db->insertRows(QStringLiteral("岗位员工new"),
                   {QStringLiteral("员工代号"), QStringLiteral("岗位代号"),
                    QStringLiteral("主要岗位"), QStringLiteral("离岗日期")},
                   {{QStringLiteral("1001"), QStringLiteral("G01"), true, QVariant()},
                    {QStringLiteral("1001"), QStringLiteral("G02"), QVariant(), QVariant()},
                    {QStringLiteral("1001"), QStringLiteral("G03"), false, QDate(2023, 6, 30)},
                    {QStringLiteral("1002"), QStringLiteral("G01"), true, QVariant()},
                    {QStringLiteral("1003"), QStringLiteral("G01"), true, QVariant()}});
    db->writeSettings();
    return db;
}

} // namespace quorvale
