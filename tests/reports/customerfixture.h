#pragma once

#include "reports/reportwindow.h"
#include "reportwindowfixture.h"
#include "session/dbconnection.h"
#include "session/sessionvalues.h"
#include "support/fixturedb.h"
#include "ui/flexgrid.h"
#include "ui/msgbox.h"

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>
#include <gtest/gtest.h>

namespace quorvale {

// The customer reports' offices are added by each test.
class CustomerFixture : public ReportWindowFixture {
  protected:
    void SetUp() override
    {
        signIn(QStringLiteral("张三"), QStringLiteral("物业一部"), QStringLiteral("主管"));
    }

    void office(const QString &code, const QString &name, const QVariant &commercial = 0,
                const QString &dept = QStringLiteral("D1"))
    {
        db.insert(QStringLiteral("设置管理处"), {{QStringLiteral("GYD_DH"), code},
                                                 {QStringLiteral("GYD_Name"), name},
                                                 {QStringLiteral("商用物业"), commercial},
                                                 {QStringLiteral("对应部门代号"), dept}});
    }
};

} // namespace quorvale
