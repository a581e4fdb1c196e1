#include "session/windows/frmabout.h"

#include "runtime/registry.h"
#include "runtime/runtimeerror.h"
#include "session/mdibackground.h"
#include "ui/centerinmain.h"
#include "ui/desktop.h"

#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QVBoxLayout>

namespace quorvale {

namespace {
class Emblem : public QWidget {
  public:
    explicit Emblem(QWidget *parent) : QWidget(parent) { setFixedSize(64, 64); }

  protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.drawImage(rect(), drawEmblem(size() * devicePixelRatio()));
    }
};

void startProgram(const QString &path)
{
    if (!QProcess::startDetached(path, {}))
        throw RuntimeError(ErrorNumber::FileNotFound, QStringLiteral("文件未找到"));
}
} // namespace

FrmAbout::FrmAbout(DesktopPtr desktop, QWidget *parent)
    : QWidget(parent), m_desktop(std::move(desktop))
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("关于 ") + programTitle());
    setAttribute(Qt::WA_DeleteOnClose);

    auto *title = new QLabel(programTitle(), this);
    title->setObjectName(QStringLiteral("lblTitle"));
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    titleFont.setBold(true);
    title->setFont(titleFont);

    m_label7 = new QLabel(this);
    m_label7->setObjectName(QStringLiteral("Label7"));
    m_label7->setText(QStringLiteral("系统信息设置系统") + QString::number(QUORVALE_VERSION_MAJOR) +
                      QStringLiteral(".") + QString::number(QUORVALE_VERSION_MINOR) +
                      QStringLiteral(".") + QString::number(QUORVALE_VERSION_PATCH));

    auto *description =
        new QLabel(QStringLiteral("物业管理报表与数据导出工具：房产与车位客户基础数据、"
                                  "财务欠收与预收统计，表格打印及输出到 Excel 工作簿。"),
                   this);
    description->setObjectName(QStringLiteral("lblDescription"));
    description->setWordWrap(true);

    auto *line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    auto *disclaimer = new QLabel(QStringLiteral("本程序仅供公司内部使用。"), this);
    disclaimer->setObjectName(QStringLiteral("lblDisclaimer"));
    disclaimer->setWordWrap(true);
    disclaimer->setStyleSheet(QStringLiteral("color: #6b7a8c;"));

    m_cmdOK = new QPushButton(QStringLiteral("确定"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdOK->setDefault(true);
    m_cmdSysInfo = new QPushButton(QStringLiteral("系统信息(&S)..."), this);
    m_cmdSysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    for (QPushButton *b : {m_cmdOK, m_cmdSysInfo})
        b->setMinimumWidth(110);

    auto *text = new QVBoxLayout;
    text->setSpacing(6);
    text->addWidget(title);
    text->addWidget(m_label7);
    text->addSpacing(6);
    text->addWidget(description);
    auto *top = new QHBoxLayout;
    top->setSpacing(18);
    top->addWidget(new Emblem(this), 0, Qt::AlignTop);
    top->addLayout(text, 1);

    auto *bottom = new QHBoxLayout;
    bottom->addWidget(disclaimer, 1);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cmdSysInfo);
    bottom->addLayout(buttons);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(22, 20, 22, 18);
    layout->setSpacing(12);
    layout->addLayout(top);
    layout->addWidget(line);
    layout->addLayout(bottom);
    setFixedSize(480, 250);

    connect(m_cmdOK, &QPushButton::clicked, this, &QWidget::close);
    connect(m_cmdSysInfo, &QPushButton::clicked, this, [this] { StartSysInfo(*m_desktop); });
}

// Escape closes it, as it would a dialog.
void FrmAbout::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void FrmAbout::showEvent(QShowEvent *event)
{
    if (!m_centred) {
        m_centred = true;
        CenterInMain(this);
    }
    QWidget::showEvent(event);
}

void StartSysInfo(const Desktop &desktop)
{
    try {
        QString path;
        if (GetKeyValue(RegistryRoot::LocalMachine,
                        QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                        QStringLiteral("PATH"), path)) {
            startProgram(path);
            return;
        }
        QString folder;
        if (GetKeyValue(RegistryRoot::LocalMachine,
                        QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"),
                        QStringLiteral("MSINFO"), folder)) {
            const QString program = folder + QStringLiteral("\\MSINFO32.EXE");
            if (QFileInfo::exists(program)) {
                startProgram(program);
                return;
            }
        }
    } catch (const RuntimeError &) {
        // Any failure above ends in the same message.
    }
    desktop.msgBox(QStringLiteral("此时系统信息不可用"), vb::OKOnly);
}

} // namespace quorvale
