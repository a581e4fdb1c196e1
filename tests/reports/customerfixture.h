#pragma once

#include "platform/flexgrid.h"
#include "platform/msgbox.h"
#include "reports/reportwindow.h"
#include "session/dbconnection.h"
#include "session/sessionvalues.h"
#include "support/fixturedb.h"

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>
#include <gtest/gtest.h>

namespace quorvale {

// A signed-in session of department D1 over a fixture database, with every
// message box recorded and answered OK.
class CustomerFixture : public ::testing::Test {
  protected:
    void SetUp() override
    {
        DbConn = db.connection();
        CurUserName = QStringLiteral("张三");
        CurDeptCode = QStringLiteral("D1");
        CurDeptName = QStringLiteral("物业一部");
        CurPostName = QStringLiteral("主管");
        HasProjectAudit = false;
        setMsgBoxResponder([this](const MsgBoxCall &call) {
            boxes.append(call);
            return (call.style & 7) == vb::YesNo ? vb::No : vb::OK;
        });
    }

    void TearDown() override
    {
        for (const QPointer<ReportWindow> &w : windows)
            delete w.data();
        setMsgBoxResponder({});
        DbConn.reset();
    }

    void office(const QString &code, const QString &name, const QVariant &commercial = 0,
                const QString &dept = QStringLiteral("D1"))
    {
        db.insert(QStringLiteral("设置管理处"), {{QStringLiteral("GYD_DH"), code},
                                                 {QStringLiteral("GYD_Name"), name},
                                                 {QStringLiteral("商用物业"), commercial},
                                                 {QStringLiteral("对应部门代号"), dept}});
    }

    template <typename Window> Window *open()
    {
        auto *w = new Window;
        w->load();
        windows.append(w);
        return w;
    }

    // Picks an office by its code and presses a command button's handler.
    static void choose(ReportWindow *w, const QString &code)
    {
        QComboBox *combo = w->combo1();
        for (int i = 0; i < combo->count(); ++i) {
            if (combo->itemText(i).startsWith(code + QLatin1Char(' ')))
                combo->setCurrentIndex(i);
        }
    }

    // Grid rows below the header, each as its cell texts.
    static QList<QStringList> rows(const FlexGrid &grid)
    {
        QList<QStringList> out;
        for (int r = 1; r < grid.Rows(); ++r) {
            QStringList row;
            for (int c = 0; c < grid.Cols(); ++c)
                row << grid.TextMatrix(r, c);
            out << row;
        }
        return out;
    }

    FixtureDb db;
    QList<MsgBoxCall> boxes;
    QList<QPointer<ReportWindow>> windows;
};

} // namespace quorvale
