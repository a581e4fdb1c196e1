#include "runtime/runtimeerror.h"
#include "sessiontesting.h"

#include <stdexcept>

using namespace quorvale;

using TopLevelHandler = SessionTest;

TEST_F(TopLevelHandler, UnhandledErrorIsShownAndEndsTheProgram)
{
    const QString subscript = "实时错误 '9':\n\n下标越界";
    const std::pair<std::function<void()>, QString> cases[] = {
        {[] { throw RuntimeError(9, "下标越界"); }, subscript},
        {[] { throw std::runtime_error("boom"); }, "boom"},
        // Nine fields: the tenth session value has nothing to copy.
        {[this] { (new FrmLogin(desktop))->load("1,2,3,4,5,6,7,8,9"); }, subscript},
    };
    for (const auto &[run, prompt] : cases) {
        boxes.clear();
        ends.clear();
        EXPECT_FALSE(runGuarded(run, desktop->unhandledErrors()));
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_TRUE(boxes[0].prompt.endsWith(prompt)) << boxes[0].prompt.toStdString();
        EXPECT_EQ(boxes[0].title, programTitle());
        EXPECT_EQ(boxes[0].style, vb::Critical);
        EXPECT_EQ(ends, std::vector<int>{1});
    }
    // No main window opened on the short command line.
    EXPECT_EQ(quorvale::testing::topLevelWindow<MdiForm1>(), nullptr);
}
