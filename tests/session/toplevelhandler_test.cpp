#include "runtime/runtimeerror.h"
#include "sessiontesting.h"

#include <stdexcept>

using namespace quorvale;

using TopLevelHandler = SessionTest;

TEST_F(TopLevelHandler, UnhandledErrorIsShownAndEndsTheProgram)
{
    EXPECT_FALSE(runGuarded([] { throw RuntimeError(9, QStringLiteral("下标越界")); }));
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].prompt, QStringLiteral("实时错误 '9':\n\n下标越界"));
    EXPECT_EQ(boxes[0].title, programTitle());
    EXPECT_EQ(boxes[0].style, vb::Critical);
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_NE(ends[0], 0);
}

TEST_F(TopLevelHandler, ForeignExceptionsAreReportedToo)
{
    EXPECT_FALSE(runGuarded([] { throw std::runtime_error("boom"); }));
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_TRUE(boxes[0].prompt.endsWith(QStringLiteral("boom")));
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_NE(ends[0], 0);
}

TEST_F(TopLevelHandler, ShortCommandLineIsAnUnhandledIndexError)
{
    // Nine fields: the tenth session value has nothing to copy.
    auto *login = new FrmLogin;
    runGuarded([&] { login->load(QStringLiteral("1,2,3,4,5,6,7,8,9")); });
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].prompt, QStringLiteral("实时错误 '9':\n\n下标越界"));
    EXPECT_EQ(ends, std::vector<int>{1});
    EXPECT_EQ(CurUserNo, QStringLiteral("1"));
    EXPECT_EQ(CurPostClassCode, QStringLiteral("9"));
    EXPECT_EQ(MdiForm1::instance(), nullptr);
}
