// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QObject;

namespace KivPrivate {

/// The place that an error line names: the source file and the routine that the message belongs to.
struct SourcePlace
{
    const char *file;
    const char *function;
};

/// Writes "[HH:MM:SS]<file> Err (<function>): <message>" to the standard error stream in one write
/// and flushes it. @p format is printf's and brings its own line end. Any thread.
[[gnu::format(printf, 2, 3)]] void writeErrorLine(SourcePlace place, const char *format, ...);

/// The error line of a painting routine whose cached image @p imageName of @p widget is a null
/// image.
void reportNullImage(SourcePlace place, const QObject *widget, const char *imageName);

} // namespace KivPrivate

/// The place where it stands; only in the routine that the message belongs to.
#define KIV_HERE (KivPrivate::SourcePlace{__FILE__, __func__})
