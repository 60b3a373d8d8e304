// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <metroStyle.h>

#include <QtCore/QSize>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <optional>
#include <vector>

class QWidget;
struct WidgetDescription;

/// What makes a widget differ from a new one of its class, in no particular language.
struct WidgetSettings
{
    struct Setting
    {
        QString property;
        QString setter; ///< empty where only setProperty() is sure to reach the property
        QVariant value;
        QStringList enumerators; ///< of an enumerator or a combination of flags, with their scope
        QString enumeration;     ///< what declares them, with its scope
        /// The file of an icon or pixmap; empty for other values and for images without a file.
        QString imageFile;
    };

    QString className;
    QString variable;
    QSize size; ///< invalid for a widget that sizes itself
    std::optional<elemDesc_t> state;
    std::vector<Setting> settings;
};

/// Reads the settings of @p widget; @p state is what it was given by setState(), if anything.
WidgetSettings settingsOf(QWidget *widget, const WidgetDescription &description,
                          const std::optional<elemDesc_t> &state);

/// The statements in C++ that make such a widget on @p parent, a name of a variable.
QString toCpp(const WidgetSettings &settings, const QString &parent = QStringLiteral("parent"));

/// The same statements in Python, for PyQt5 and PyQt6.
QString toPython(const WidgetSettings &settings, const QString &parent = QStringLiteral("parent"));
