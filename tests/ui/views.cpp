// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs the tst_*.qml beside this file: each view as it is, clicked and typed into, on a stage.

#include "drag.h"
#include "stage.h"

#include <QtQuickTest>

void qml_register_types_Pixpress();

namespace {

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        qml_register_types_Pixpress();
        qmlRegisterType<pixpress::test::Stage>("Pixpress.Testing", 1, 0, "Stage");
        qmlRegisterType<pixpress::test::Drag>("Pixpress.Testing", 1, 0, "Drag");
    }
};

} // namespace

QUICK_TEST_MAIN_WITH_SETUP(views, Setup)

#include "views.moc"
