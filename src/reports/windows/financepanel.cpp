#include "reports/windows/financepanel.h"

#include "reports/financecontrolnames.h"
#include "reports/financereporttraits.h"
#include "reports/reportparams.h"
#include "runtime/vb.h"
#include "ui/chinesecalendar.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace quorvale {

namespace {

const QString kFeeItemsLabel = QStringLiteral("选择项目");
const QString kUpToMonth = QStringLiteral("应收截止年月");
const QString kMonthRange = QStringLiteral("应收年月范围");
const QString kTo = QStringLiteral("至");
const QString kReceiptCutOff = QStringLiteral("收款截止日期");
const QString kReceiptRange = QStringLiteral("收款日期范围");
const QString kEllipsis = QStringLiteral("…");
const QString kPickerFont = QStringLiteral("微软雅黑");
const QString kPickerFormat = QStringLiteral("yyyy-MM-dd");

// The calendar buttons by the tag of the box they serve.
const QLatin1String kButtonForTag[4] = {financecontrol::Command9, financecontrol::Command4,
                                        financecontrol::Command3, financecontrol::Command2};
const QLatin1String kTextName[4] = {financecontrol::Text1, financecontrol::Text2,
                                    financecontrol::Text3, financecontrol::Text4};
const QLatin1String kPickerName[3] = {financecontrol::DTPicker1, financecontrol::DTPicker2,
                                      financecontrol::DTPicker3};

QRadioButton *optionButton(const QString &name, int index, const QString &caption, QWidget *parent)
{
    auto *button = new QRadioButton(caption, parent);
    button->setObjectName(name);
    button->setProperty("index", index);
    return button;
}

QLabel *label(const QString &name, const QString &caption, QWidget *parent)
{
    auto *l = new QLabel(caption, parent);
    l->setObjectName(name);
    return l;
}

} // namespace

FinancePanel::FinancePanel(QFrame *picture2, FinanceReportKind kind)
    : m_advance(financeTraits(kind).advance)
{
    auto *grid = new QGridLayout(picture2);
    grid->setContentsMargins(4, 0, 4, 0);
    grid->setVerticalSpacing(2);

    m_combo3 = new QComboBox(picture2);
    m_combo3->setObjectName(financecontrol::Combo3);
    m_combo3->setMinimumContentsLength(8);
    m_combo3->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);

    const int monthBoxWidth =
        picture2->fontMetrics().horizontalAdvance(QStringLiteral("0000000000"));
    for (int tag = 1; tag <= 4; ++tag) {
        if (tag == 2 && m_advance)
            continue;
        auto *box = new QLineEdit(picture2);
        box->setObjectName(kTextName[tag - 1]);
        box->setFixedWidth(tag == 2 ? monthBoxWidth * 3 / 2 : monthBoxWidth);
        m_text[tag - 1] = box;
        auto *button = new QPushButton(kEllipsis, picture2);
        button->setObjectName(kButtonForTag[tag - 1]);
        button->setFixedWidth(button->fontMetrics().horizontalAdvance(kEllipsis) + 16);
        m_calendarButton[tag - 1] = button;
    }

    m_option1[0] = optionButton(QStringLiteral("Option1"), 0, kUpToMonth, picture2);
    m_option1[1] = optionButton(QStringLiteral("Option1"), 1, kMonthRange, picture2);
    m_option1[0]->setChecked(true);
    // Two rows: the one-month line with the fee items beside it, the range
    // line below; the receipt date follows on the right.
    grid->addWidget(m_option1[0], 0, 0);
    grid->addWidget(m_text[0], 0, 1);
    grid->addWidget(m_calendarButton[0], 0, 2);
    grid->addWidget(label(financecontrol::Label2, kFeeItemsLabel, picture2), 0, 3);
    grid->addWidget(m_combo3, 0, 4, 1, 2);
    grid->addWidget(m_option1[1], 1, 0);
    grid->addWidget(m_text[2], 1, 1);
    grid->addWidget(m_calendarButton[2], 1, 2);
    grid->addWidget(label(financecontrol::Label3, kTo, picture2), 1, 3, Qt::AlignRight);
    grid->addWidget(m_text[3], 1, 4);
    grid->addWidget(m_calendarButton[3], 1, 5);

    if (!m_advance) {
        grid->addWidget(label(QStringLiteral("Label4"), kReceiptCutOff, picture2), 0, 6);
        grid->addWidget(m_text[1], 0, 7);
        grid->addWidget(m_calendarButton[1], 0, 8);
        return;
    }

    m_frame1 = new QGroupBox(picture2);
    m_frame1->setObjectName(financecontrol::Frame1);
    auto *frame = new QGridLayout(m_frame1);
    frame->setContentsMargins(4, 2, 4, 2);
    frame->setVerticalSpacing(2);
    QFont pickerFont = picture2->font();
    pickerFont.setFamily(kPickerFont);
    for (int i = 0; i < 3; ++i) {
        auto *picker = new QDateEdit(m_frame1);
        picker->setObjectName(kPickerName[i]);
        picker->setCalendarPopup(true);
        picker->setCalendarWidget(new ChineseCalendar(picker));
        picker->setDisplayFormat(kPickerFormat);
        picker->setFont(pickerFont);
        picker->setMinimumWidth(
            QFontMetrics(pickerFont).horizontalAdvance(QStringLiteral("0000-00-00")) + 36);
        m_dtPicker[i] = picker;
    }
    m_option2[0] = optionButton(QStringLiteral("Option2"), 0, kReceiptCutOff, m_frame1);
    m_option2[1] = optionButton(QStringLiteral("Option2"), 1, kReceiptRange, m_frame1);
    m_option2[0]->setChecked(true);
    frame->addWidget(m_option2[0], 0, 0);
    frame->addWidget(m_dtPicker[2], 0, 1);
    frame->addWidget(m_option2[1], 1, 0);
    frame->addWidget(m_dtPicker[0], 1, 1);
    frame->addWidget(label(QStringLiteral("Label1"), kTo, m_frame1), 1, 2);
    frame->addWidget(m_dtPicker[1], 1, 3);
    grid->addWidget(m_frame1, 0, 6, 2, 1);
    for (QRadioButton *option : m_option2)
        QObject::connect(option, &QRadioButton::clicked, m_frame1, [this] { applyReceiptMode(); });
}

void FinancePanel::setDefaults(const QDate &today)
{
    const ReportParams defaults = windowLoadDefaults(today);
    m_text[0]->setText(defaults.month);
    m_text[2]->setText(defaults.firstMonth);
    m_text[3]->setText(defaults.lastMonth);
    if (!m_advance) {
        m_text[1]->setText(defaults.receiptCutOffText);
        return;
    }
    m_dtPicker[0]->setDate(defaults.receiptFrom);
    m_dtPicker[1]->setDate(defaults.receiptTo);
    m_dtPicker[2]->setDate(defaults.receiptCutOff);
    applyReceiptMode();
}

void FinancePanel::applyReceiptMode()
{
    const bool cutOff = m_option2[0]->isChecked();
    m_dtPicker[0]->setEnabled(!cutOff);
    m_dtPicker[1]->setEnabled(!cutOff);
    m_dtPicker[2]->setEnabled(cutOff);
}

void FinancePanel::readInto(ReportParams &params) const
{
    params.monthRange = !m_option1[0]->isChecked();
    params.month = m_text[0]->text();
    params.firstMonth = m_text[2]->text();
    params.lastMonth = m_text[3]->text();
    if (!m_advance) {
        params.receiptCutOffText = m_text[1]->text();
        return;
    }
    params.receiptRange = !m_option2[0]->isChecked();
    params.receiptFrom = m_dtPicker[0]->date();
    params.receiptTo = m_dtPicker[1]->date();
    params.receiptCutOff = m_dtPicker[2]->date();
}

QLineEdit *FinancePanel::boxForTag(int tag) const
{
    return tag >= 1 && tag <= 4 ? m_text[tag - 1] : nullptr;
}

QPushButton *FinancePanel::calendarButton(int tag) const
{
    return tag >= 1 && tag <= 4 ? m_calendarButton[tag - 1] : nullptr;
}

QList<int> FinancePanel::calendarTags() const
{
    return m_advance ? QList<int>{1, 3, 4} : QList<int>{1, 2, 3, 4};
}

} // namespace quorvale
