#include "session/sessionqueries.h"
#include "sessiontesting.h"

#include <gtest/gtest.h>

using namespace quorvale;

namespace {

// The chosen fields of every row, the rows parted by " | ".
std::string rows(const FixtureDb &db, const QString &statement, std::initializer_list<int> fields)
{
    QStringList out;
    for (const QStringList &row : db.rows(statement)) {
        QStringList picked;
        for (int field : fields)
            picked << row.value(field).trimmed();
        out << picked.join(QLatin1Char(' '));
    }
    return out.join(QStringLiteral(" | ")).toStdString();
}

} // namespace

// Values go in as they stand (blanks kept), quotes doubled: a quote signs in
// no one and breaks nothing.
TEST(SessionStatements, RowsOfTheSignInChecks)
{
    const auto db = makeStaffDb();
    db->insert("员工档案", {{"工号", "a'b"}, {"姓名", "欧阳"}, {"帐号密码", "x'y"}});
    db->insertRows(
        "专项审核权限表", {"ID", "类型", "部门代号", "岗位代号"},
        {{1, "项目管理", "B01", "G01"}, {2, "其他", "B01", "G02"}, {3, "项目管理", "B02", "G'1"}});
    db->insertRows("GroupPrivilege", {"GroupID", "FormName", "Popedom", "Memo"},
                   {{"R1", "车位客户", true, "报表"},
                    {"R2", "财务数据欠收表房产", false, "报表"},
                    {"R3", "收费登记", false, "其他"}});
    db->insertRows("岗位权限设置", {"id", "组代号", "岗位代号", "授权"},
                   {{1, "R1", "G01", true},
                    {2, "R2", "G01", true},
                    {3, "R3", "G01", true},
                    {4, "R1", "G02", false}});

    const struct {
        const char *name;
        QString statement;
        std::initializer_list<int> fields;
        const char *expected;
    } cases[] = {
        {"the right password", employeeCheckSql("1001", "123"), {0, 1}, "1001 张三"},
        {"a quote in the password", employeeCheckSql("1001", "' or '1'='1"), {0}, ""},
        {"blanks around the password are trimmed", employeeCheckSql("1001", " 123 "), {0}, "1001"},
        {"blanks around the number are not", employeeCheckSql(" 1001", "123"), {0}, ""},
        {"quotes in both values", employeeCheckSql("a'b", "x'y"), {0}, "a'b"},
        {"current posts only", currentPostsSql("1001"), {7}, "G01 | G02"},
        {"one who left has none", currentPostsSql("1003"), {0}, ""},
        {"the audit right of the post", projectAuditSql("B01", "G01"), {0, 1}, "1 项目管理"},
        {"another kind of right is none", projectAuditSql("B01", "G02"), {0}, ""},
        {"a quote in the post", projectAuditSql("B02", "G'1"), {0}, "3"},
        {"granted report privileges, False before True",
         privilegeSql("G01", "报表"),
         {4},
         "财务数据欠收表房产 | 车位客户"},
        {"a privilege not granted", privilegeSql("G02", "报表"), {0}, ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(rows(*db, c.statement, c.fields), c.expected) << c.name;
}

TEST(SessionStatements, CurrentPostsCarryTheirDepartmentPostAndMainFlag)
{
    const auto db = makeStaffDb();
    // Name, department kind and name, post kind and name, department, post, main post.
    const QList<QStringList> posts = db->rows(currentPostsSql("1002"));
    ASSERT_EQ(posts.size(), 1);
    EXPECT_EQ(posts[0].mid(0, 10).join(QLatin1Char('|')).toStdString(),
              " 李四 |D1 | 管理处类|P1  |管理类 |B01 |第一管理处  |G01 | 主任 |1");
}
