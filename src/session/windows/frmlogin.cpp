#include "session/windows/frmlogin.h"

#include "runtime/runtimeerror.h"
#include "runtime/toplevelhandler.h"
#include "session/dbconnection.h"
#include "session/mdibackground.h"
#include "session/signin.h"
#include "session/windows/mdiform1.h"
#include "ui/desktop.h"

#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace quorvale {

namespace {
RuntimeError subscriptOutOfRange()
{
    return RuntimeError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("下标越界"));
}

// "数据库连接失败!" on a False connect, then the program ends.
bool connected(Session &session, const Desktop &desktop)
{
    if (ConnectDatabase(session))
        return true;
    desktop.msgBox(QStringLiteral("数据库连接失败!"), vb::Information, QStringLiteral("连接提示"));
    return false;
}

// The product banner at the top of the window, drawn by code like the
// main window's background.
class LoginBanner : public QWidget {
  public:
    explicit LoginBanner(QWidget *parent) : QWidget(parent) { setFixedHeight(96); }

  protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.drawImage(rect(), drawLoginBanner(size()));
    }
};

} // namespace

FrmLogin::FrmLogin(DesktopPtr desktop, WindowFactories windows, QWidget *parent)
    : QWidget(parent), m_desktop(std::move(desktop)), m_windows(std::move(windows))
{
    setObjectName(QStringLiteral("frmLogin"));
    setWindowTitle(QStringLiteral("用户登录"));

    auto *banner = new LoginBanner(this);

    m_txtUser = new QLineEdit(this);
    m_txtUser->setObjectName(QStringLiteral("TxtUser"));
    m_txtPassword = new QLineEdit(this);
    m_txtPassword->setObjectName(QStringLiteral("txtPassword"));
    m_txtPassword->setEchoMode(QLineEdit::Password);
    for (QLineEdit *edit : {m_txtUser, m_txtPassword}) {
        edit->setMinimumWidth(220);
        edit->installEventFilter(this);
    }

    m_cmdOK = new QPushButton(QStringLiteral("确定"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdCancel = new QPushButton(QStringLiteral("取消"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    // A focused button takes Enter, as the keyboard users expect.
    for (QPushButton *button : {m_cmdOK, m_cmdCancel}) {
        button->setAutoDefault(true);
        button->setMinimumWidth(88);
    }

    m_label2 = new QLabel(QStringLiteral("您有多个岗位，请双击选择本次登录的岗位："), this);
    m_label2->setObjectName(QStringLiteral("Label2"));
    m_list1 = new QListWidget(this);
    m_list1->setObjectName(QStringLiteral("List1"));
    m_list1->setMinimumHeight(120);

    m_label1 = new QLabel(this);
    m_label1->setObjectName(QStringLiteral("Label1"));
    m_label1->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_label1->setStyleSheet(QStringLiteral("color: #6b7a8c;"));

    auto *form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(10);
    form->addRow(QStringLiteral("用户名"), m_txtUser);
    form->addRow(QStringLiteral("密码"), m_txtPassword);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cmdCancel);

    auto *body = new QVBoxLayout;
    body->setContentsMargins(28, 18, 28, 12);
    body->setSpacing(12);
    body->addLayout(form);
    body->addLayout(buttons);
    body->addWidget(m_label2);
    body->addWidget(m_list1);
    body->addWidget(m_label1);

    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(banner);
    outer->addLayout(body);
    // The window grows when the post list appears and shrinks back after.
    outer->setSizeConstraint(QLayout::SetFixedSize);

    setTabOrder(m_txtUser, m_txtPassword);
    setTabOrder(m_txtPassword, m_cmdOK);
    setTabOrder(m_cmdOK, m_cmdCancel);
    setTabOrder(m_cmdCancel, m_list1);

    connect(m_cmdOK, &QPushButton::clicked, this, &FrmLogin::signIn);
    connect(m_cmdCancel, &QPushButton::clicked, this, &FrmLogin::cancel);
    connect(m_list1, &QListWidget::itemDoubleClicked, this, [this] { choosePost(); });

    showPostList(false);
    m_txtUser->setFocus();
}

FrmLogin::~FrmLogin() = default;

bool FrmLogin::load(const QString &commandLineText)
{
    if (!commandLineText.isEmpty()) {
        m_session = Session::fromCommandLine(commandLineText);
        if (connected(m_session, *m_desktop)) {
            showMainWindow();
            return false;
        }
    }
    m_label1->setText(QStringLiteral("V") + QString::number(QUORVALE_VERSION_MAJOR) +
                      QStringLiteral(".") + QString::number(QUORVALE_VERSION_MINOR) +
                      QStringLiteral("版"));
    return true;
}

void FrmLogin::signIn()
{
    const QString user = m_txtUser->text();
    const QString password = m_txtPassword->text();
    SignInRefusal refusal;
    if (!checkTypedCredentials(user, password, refusal)) {
        m_desktop->msgBox(refusal.message, refusal.style);
        return;
    }
    m_session.clearForSignIn();
    if (!connected(m_session, *m_desktop)) {
        m_desktop->end(0);
        return;
    }

    const SignInResult result = verifyCredentials(m_session, user, password);
    switch (result.kind) {
    case SignInResult::Kind::Refused:
        m_desktop->msgBox(result.refusal.message, result.refusal.style);
        return;
    case SignInResult::Kind::SuperUser:
        showMainWindow();
        return;
    case SignInResult::Kind::Posts:
        break;
    }
    m_list1->clear();
    m_list1->addItems(result.listTexts);
    m_postChoices = result.posts;
    if (m_list1->count() == 1) {
        m_list1->setCurrentRow(0);
        choosePost();
    } else {
        showPostList(true);
    }
}

void FrmLogin::cancel()
{
    m_desktop->end(0);
}

void FrmLogin::choosePost()
{
    const int row = m_list1->currentRow();
    if (row < 0 || row >= m_postChoices.size())
        throw subscriptOutOfRange();
    m_session.takePost(m_postChoices.at(row));
    showMainWindow();
}

bool FrmLogin::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_txtUser || watched == m_txtPassword) {
        if (event->type() == QEvent::FocusIn) {
            auto *edit = static_cast<QLineEdit *>(watched);
            // After the click that gave the focus, which would drop a selection made now.
            QTimer::singleShot(0, edit, [edit] { edit->selectAll(); });
            if (edit == m_txtUser)
                showPostList(false);
        } else if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent *>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                focusNextChild();
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FrmLogin::showPostList(bool visible)
{
    m_label2->setVisible(visible);
    m_list1->setVisible(visible);
}

void FrmLogin::showMainWindow()
{
    // The marker text a calling program could set is never set here, so the
    // main window is always the next step; once it is loaded this window goes.
    MdiForm1::open(quorvale::signIn(m_session), m_desktop, m_windows);
    hide();
    deleteLater();
}

} // namespace quorvale
