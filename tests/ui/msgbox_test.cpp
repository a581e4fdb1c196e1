#include "ui/msgbox.h"

#include <gtest/gtest.h>

using namespace quorvale;

TEST(MsgBox, ResponderSeesPromptStyleAndDefaultTitle)
{
    std::vector<MsgBoxCall> seen;
    setMsgBoxResponder([&](const MsgBoxCall &c) { seen.push_back(c); return vb::No; });
    EXPECT_EQ(MsgBox(QStringLiteral("确认要退出系统吗？"), vb::YesNo + vb::Information,
                     QStringLiteral("系统提示")), vb::No);
    MsgBox(QStringLiteral("用户名不能为空!"), vb::Information);
    setMsgBoxResponder({});
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].style, 68);
    EXPECT_EQ(seen[0].title, QStringLiteral("系统提示"));
    EXPECT_EQ(seen[1].title, programTitle());
}
