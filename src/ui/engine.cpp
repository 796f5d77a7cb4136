// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/engine.h"

#include <QQmlApplicationEngine>
#include <QQmlComponent>

using namespace Qt::StringLiterals;

// The types of the views are registered by a function that only a reference brings into the
// program, since it is in a static library.
void qml_register_types_Pixpress();

namespace pixpress {

QUrl viewURL(const QString &name)
{
    return QUrl(u"qrc:/qt/qml/Pixpress/%1.qml"_s.arg(name));
}

void readAhead(QQmlEngine &engine, const QString &name)
{
    // What has been read is kept as long as a component refers to it.
    new QQmlComponent(&engine, viewURL(name), QQmlComponent::Asynchronous, &engine);
}

std::unique_ptr<QQmlApplicationEngine> makeEngine()
{
    qml_register_types_Pixpress();
    auto engine = std::make_unique<QQmlApplicationEngine>();
    engine->addImportPath(u"qrc:/qt/qml"_s);
    readAhead(*engine, u"PixpressWindow"_s);
    return engine;
}

} // namespace pixpress
