// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/optionseditor.h"

#include "ui/colours.h"
#include "ui/singleline.h"

#include <QDir>

namespace pixpress {

namespace {

/// The texts of all cases of a closed set, in the order in which every picker shows them.
template <ClosedSet E>
QStringList texts(QString (*text)(E))
{
    QStringList list;
    for (const E value : allCases<E>())
        list.append(text(value));
    return list;
}

/// The case that a picker's index stands for; `current` when the index is none.
template <ClosedSet E>
E caseAt(int index, E current)
{
    const auto cases = allCases<E>();
    return index >= 0 && index < std::ssize(cases) ? cases[static_cast<size_t>(index)] : current;
}

QString toDigits(std::optional<qint64> value)
{
    return value ? QString::number(*value) : QString();
}

/// A number without a sign, perhaps with blanks around it.
std::optional<qint64> fromDigits(const QString &digits)
{
    const QString trimmed = digits.trimmed();
    bool isNumber = false;
    const qint64 value = trimmed.toLongLong(&isNumber);
    return isNumber && trimmed[0].isDigit() ? std::optional(value) : std::nullopt;
}

} // namespace

OptionsEditor::OptionsEditor(AppState &appState, FolderChooser chooser)
    : m_appState(appState), m_chooseFolder(std::move(chooser))
{
    connect(&appState, &AppState::optionsChanged, this, &OptionsEditor::changed);
}

template <typename T>
void OptionsEditor::set(T CompressionOptions::*field, T value)
{
    CompressionOptions changed = options();
    changed.*field = std::move(value);
    m_appState.setOptions(changed);
}

QStringList OptionsEditor::resizeModes() const
{
    return texts<ResizeMode>(displayName);
}

QString OptionsEditor::resizeModeDescription() const
{
    return description(options().resizeMode);
}

QString OptionsEditor::width() const
{
    return toDigits(options().resizeWidth);
}

QString OptionsEditor::height() const
{
    return toDigits(options().resizeHeight);
}

bool OptionsEditor::hasOneDimension() const
{
    return options().resizeWidth.has_value() != options().resizeHeight.has_value();
}

QStringList OptionsEditor::formats() const
{
    return texts<ImageFormat>(displayName);
}

QColor OptionsEditor::background() const
{
    return colourFromHex(options().backgroundColor).value_or(Qt::white);
}

QStringList OptionsEditor::destinations() const
{
    return texts<OutputDestination>(title);
}

QString OptionsEditor::destinationDescription() const
{
    return description(options().outputDestination);
}

bool OptionsEditor::savesToFolder() const
{
    return options().outputDestination == OutputDestination::customFolder;
}

QString OptionsEditor::folder() const
{
    const auto &url = options().customFolderURL;
    return url ? toSingleLine(QDir::toNativeSeparators(url->toLocalFile())) : QString();
}

QString OptionsEditor::numberIn(const QString &text)
{
    return toDigits(fromDigits(text));
}

bool OptionsEditor::isColour(const QString &text)
{
    return isHexColour(text);
}

void OptionsEditor::setResizeEnabled(bool enabled)
{
    set(&CompressionOptions::resizeEnabled, enabled);
}

void OptionsEditor::setResizeMode(int index)
{
    set(&CompressionOptions::resizeMode, caseAt(index, options().resizeMode));
}

void OptionsEditor::setWidth(const QString &digits)
{
    set(&CompressionOptions::resizeWidth, fromDigits(digits));
}

void OptionsEditor::setHeight(const QString &digits)
{
    set(&CompressionOptions::resizeHeight, fromDigits(digits));
}

void OptionsEditor::setConvertEnabled(bool enabled)
{
    set(&CompressionOptions::convertEnabled, enabled);
}

void OptionsEditor::setConvertFormat(int index)
{
    set(&CompressionOptions::convertFormat, caseAt(index, options().convertFormat));
}

void OptionsEditor::setBackground(const QColor &colour)
{
    set(&CompressionOptions::backgroundColor, toHex(colour));
}

void OptionsEditor::setBackgroundText(const QString &text)
{
    if (isColour(text))
        setBackground(*colourFromHex(text));
}

void OptionsEditor::setPreserveCopyright(bool preserve)
{
    set(&CompressionOptions::preserveCopyright, preserve);
}

void OptionsEditor::setPreserveCreation(bool preserve)
{
    set(&CompressionOptions::preserveCreation, preserve);
}

void OptionsEditor::setPreserveLocation(bool preserve)
{
    set(&CompressionOptions::preserveLocation, preserve);
}

void OptionsEditor::setDestination(int index)
{
    set(&CompressionOptions::outputDestination, caseAt(index, options().outputDestination));
}

void OptionsEditor::chooseFolder()
{
    if (const auto folder = m_chooseFolder())
        set(&CompressionOptions::customFolderURL, folder);
}

} // namespace pixpress
