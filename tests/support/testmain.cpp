// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "testmain.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QCursor>
#include <QtGui/QFont>
#include <QtGui/QScreen>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleFactory>

void prepareTestEnvironment()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt warns when it has no runtime directory of its own.
    static const QTemporaryDir runtimeDirectory;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDirectory.path()));
}

void prepareTestApplication()
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    QApplication::setPalette(QApplication::style()->standardPalette());
    // Qt 6 lets a widget that appears below the pointer know of it.
    QCursor::setPos(QGuiApplication::primaryScreen()->geometry().bottomRight());
}
