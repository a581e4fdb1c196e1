#include "support/chineseapplication.h"
#include "ui/desktop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetrics>
#include <QMessageBox>
#include <QTimer>
#include <gtest/gtest.h>
#include <functional>
#include <memory>

using namespace quorvale;

namespace {

// Acts on the message box once it is up; a box that does not become the
// active modal window within five seconds fails the test, and whatever box
// there is gets closed, so the test ends instead of waiting for a click.
void whenShown(const std::function<void(QMessageBox *)> &act)
{
    auto *poll = new QTimer;
    auto waited = std::make_shared<int>(0);
    QObject::connect(poll, &QTimer::timeout, [=] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box && ++*waited < 500)
            return;
        poll->stop();
        poll->deleteLater();
        if (box) {
            act(box);
            return;
        }
        ADD_FAILURE() << "no message box became the active window";
        for (QWidget *w : QApplication::topLevelWidgets())
            if (auto *stray = qobject_cast<QMessageBox *>(w))
                stray->reject();
    });
    poll->start(10);
}

} // namespace

TEST(MsgBox, ADesktopsAnswerSeesPromptStyleAndDefaultTitle)
{
    std::vector<MsgBoxCall> seen;
    Desktop desktop;
    desktop.answerBox = [&](const MsgBoxCall &c) {
        seen.push_back(c);
        return vb::No;
    };
    EXPECT_EQ(desktop.msgBox(QStringLiteral("确认要退出系统吗？"), vb::YesNo + vb::Information,
                             QStringLiteral("系统提示")),
              vb::No);
    desktop.msgBox(QStringLiteral("用户名不能为空!"), vb::Information);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].style, 68);
    EXPECT_EQ(seen[0].title, QStringLiteral("系统提示"));
    EXPECT_EQ(seen[1].title, programTitle());
}

// A question in a Chinese program reads Chinese on its buttons too, as a
// clerk sees it: the real box, answered by clicking.
TEST(MsgBox, QuestionButtonsReadChinese)
{
    quorvale::testing::ChineseApplication chinese;
    QStringList buttons;
    whenShown([&](QMessageBox *box) {
        for (QAbstractButton *b : box->buttons())
            buttons << b->text();
        box->button(QMessageBox::No)->click();
    });
    const Desktop real;
    EXPECT_EQ(real.msgBox(QStringLiteral("是否要修改打印设置？"), vb::YesNo), vb::No);
    buttons.sort();
    EXPECT_EQ(buttons, (QStringList{"否(&N)", "是(&Y)"}));

    whenShown([&](QMessageBox *box) {
        buttons = {box->buttons().first()->text()};
        box->buttons().first()->click();
    });
    real.msgBox(QStringLiteral("请选择管理处！"));
    EXPECT_EQ(buttons, QStringList{"确定"});
}

// The title bar has room for the whole title however short the prompt.
TEST(MsgBox, BoxIsWideEnoughForItsTitle)
{
    quorvale::testing::ChineseApplication chinese;
    const QString title = QStringLiteral("quorvale 物业报表系统提示");
    int width = 0, needed = 0;
    whenShown([&](QMessageBox *box) {
        QFont caption = box->font();
        caption.setBold(true);
        needed = QFontMetrics(caption).horizontalAdvance(title);
        width = box->width();
        box->buttons().first()->click();
    });
    Desktop().msgBox(QStringLiteral("好"), vb::OKOnly, title);
    EXPECT_GE(width, needed + 100) << "the frame's icon and buttons leave too little for the title";
}
