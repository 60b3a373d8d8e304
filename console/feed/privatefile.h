// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

/// The content of the file @p path, at most @p mostBytes; nothing, with the reason in @p error,
/// when it cannot be read or is longer.
std::optional<QByteArray> readSmallFile(const QString &path, int mostBytes, QString *error);

/// The same for a file with secrets: it must belong to the user who runs this, and nobody else may
/// read or write it.
std::optional<QByteArray> readPrivateFile(const QString &path, int mostBytes, QString *error);

/// From now on no image of this process's memory is written to a disk, and no other process of the
/// user may look into it. readPrivateFile() does this.
void keepOutOfDumps();

/// Replaces the file @p path, which only its owner may read from its first moment on. Returns
/// whether it succeeded, with the reason in @p error when not.
bool writePrivateFile(const QString &path, const QByteArray &content, QString *error);
