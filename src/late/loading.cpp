// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "late/loading.h"

#include <QCoreApplication>
#include <QLibrary>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

std::expected<const ModuleFunctions *, QString> load()
{
    QLibrary library(QCoreApplication::applicationDirPath() + u"/" PIXPRESS_MODULE ""_s);
    library.setLoadHints(QLibrary::PreventUnloadHint); // libvips cannot be started twice
    const auto entry = reinterpret_cast<ModuleEntry *>(library.resolve(moduleEntry));
    if (!entry)
        return std::unexpected(u"A part of Pixpress cannot be loaded: "_s + library.errorString());
    return entry();
}

} // namespace

const std::expected<const ModuleFunctions *, QString> &module()
{
    static const auto loaded = load();
    return loaded;
}

Thumbnail makeThumbnail(int descriptor, int longerSide, const std::atomic_bool &stopped)
{
    return module() ? (*module())->makeThumbnail(descriptor, longerSide, stopped) : Thumbnail();
}

std::expected<std::unique_ptr<HttpWorker>, TransportError>
makeHttpWorker(HttpLimits limits, std::function<void()> onFinished)
{
    if (!module())
        return std::unexpected(TransportError{TransportError::Case::other, module().error()});
    return (*module())->makeHttpWorker(std::move(limits), std::move(onFinished));
}

} // namespace pixpress
