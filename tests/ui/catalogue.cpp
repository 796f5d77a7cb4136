// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue.h"

#include <QFile>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

void readTranslation(QXmlStreamReader &xml, Message &message)
{
    message.type = xml.attributes().value("type"_L1).toString();
    if (!message.counts) {
        message.translations = {xml.readElementText()};
        return;
    }
    while (xml.readNextStartElement())
        message.translations.append(xml.readElementText());
}

Message readMessage(QXmlStreamReader &xml, const QString &context)
{
    Message message;
    message.context = context;
    message.counts = xml.attributes().value("numerus"_L1) == "yes"_L1;
    while (xml.readNextStartElement()) {
        if (xml.name() == "source"_L1)
            message.source = xml.readElementText();
        else if (xml.name() == "translation"_L1)
            readTranslation(xml, message);
        else
            xml.skipCurrentElement();
    }
    return message;
}

} // namespace

QList<Message> readCatalogue(const QString &language)
{
    QFile file(QStringLiteral(PIXPRESS_TRANSLATIONS "/pixpress_%1.ts").arg(language));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read.", qUtf8Printable(file.fileName()));
    QXmlStreamReader xml(&file);
    QList<Message> messages;
    QString context;
    xml.readNextStartElement(); // TS
    while (xml.readNextStartElement()) {
        while (xml.readNextStartElement()) {
            if (xml.name() == "name"_L1)
                context = xml.readElementText();
            else
                messages.append(readMessage(xml, context));
        }
    }
    if (xml.hasError())
        qFatal("%s: %s", qUtf8Printable(file.fileName()), qUtf8Printable(xml.errorString()));
    return messages;
}

} // namespace pixpress::test
