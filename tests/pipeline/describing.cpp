// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/naivequeue.h"

using namespace Qt::StringLiterals;

namespace pixpress::test {

QString describe(const CompressionOptions &options)
{
    const auto number = [](std::optional<qint64> value) {
        return value ? QString::number(*value) : u"?"_s;
    };
    QStringList words;
    switch (options.outputDestination) {
    case OutputDestination::alongside: words.append(u"alongside"_s); break;
    case OutputDestination::overwrite: words.append(u"overwrite"_s); break;
    case OutputDestination::customFolder:
        words.append(u"into "_s + options.customFolderURL.value_or(QUrl()).fileName());
        break;
    }
    if (options.convertEnabled)
        words.append(u"convert "_s + QString::number(int(options.convertFormat)));
    if (options.resizeEnabled)
        words.append(
            u"resize %1x%2"_s.arg(number(options.resizeWidth), number(options.resizeHeight)));
    if (options.preserveCopyright)
        words.append(u"copyright"_s);
    if (options.preserveCreation)
        words.append(u"creation"_s);
    if (options.preserveLocation)
        words.append(u"location"_s);
    if (options.backgroundColor != u"#ffffff")
        words.append(options.backgroundColor);
    return words.join(u", "_s);
}

QString describe(const QString &file, const CompressionOptions &options, const QString &status,
                 const QString &outcome)
{
    return u"task %1 (%2): %3 %4"_s.arg(file, describe(options), status, outcome);
}

QString describe(qint64 inputSize, qint64 outputSize, const QString &outputName,
                 const QString &inputType, const QString &outputType, qint64 width, qint64 height)
{
    return u"%1 to %2 bytes, %3, %4 to %5, %6x%7"_s.arg(inputSize)
        .arg(outputSize)
        .arg(outputName, inputType, outputType)
        .arg(width)
        .arg(height);
}

QStringList Totals::lines() const
{
    return {u"active tasks %1"_s.arg(activeTasks),
            u"has active tasks %1, has ended tasks %2"_s.arg(hasActiveTasks).arg(hasEndedTasks),
            u"completed %1, saved %2"_s.arg(completedCount).arg(totalSaved),
            u"first pending %1"_s.arg(firstPending),
            u"quota %1 in %2, stored %3"_s.arg(quotaCount).arg(quotaMonth, storedQuota)};
}

} // namespace pixpress::test
