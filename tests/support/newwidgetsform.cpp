// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// Writes a form with one new widget of each class, as Qt Designer makes them: newwidgetsform FILE

#include "customwidget.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

namespace {

/// What stands between the first @p begin and the last @p end, with them.
QString part(const QString &xml, const QString &begin, const QString &end)
{
    const auto from = xml.indexOf(begin);
    return xml.mid(from, xml.lastIndexOf(end) + end.size() - from);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QString widgets;
    QString classes;
    for (const WidgetDescription &description : widgetCatalogue()) {
        const CustomWidget custom(description, nullptr);
        const QString xml = custom.domXml();
        // Pages are named alike in each stack.
        QString widget = part(xml, QStringLiteral("<widget "), QStringLiteral("</widget>"));
        widgets += widget.replace(QStringLiteral("name=\"page"),
                                  QStringLiteral("name=\"%1Page").arg(custom.name()));
        // Designer itself adds the header to what it saves.
        QString entry =
            part(xml, QStringLiteral("<customwidget>"), QStringLiteral("</customwidget>"));
        entry.replace(QStringLiteral("</extends>"),
                      QStringLiteral("</extends><header>%1</header>").arg(custom.includeFile()));
        if (custom.isContainer())
            entry.replace(QStringLiteral("</header>"),
                          QStringLiteral("</header><container>1</container>"));
        classes += entry;
    }
    QFile file(application.arguments().value(1));
    const QByteArray form = QStringLiteral("<ui version=\"4.0\"><class>NewWidgets</class>"
                                           "<widget class=\"QWidget\" name=\"NewWidgets\">%1"
                                           "</widget><customwidgets>%2</customwidgets></ui>\n")
                                .arg(widgets, classes)
                                .toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(form) == form.size() ? 0 : 1;
}
