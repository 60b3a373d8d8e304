// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "customwidget.h"

#include "designablesheet.h"

#include <aerogroupbox.h>

#include <QtWidgets/QWidget>

CustomWidget::CustomWidget(const WidgetDescription &shown, QObject *parent)
    : QObject(parent)
    , description(shown)
{}

QString CustomWidget::name() const
{
    return QLatin1String(description.className);
}

QString CustomWidget::group() const
{
    switch (description.family) {
    case WidgetFamily::Aero:
        return QStringLiteral("KivWidgets: Aero");
    case WidgetFamily::Metro:
        return QStringLiteral("KivWidgets: Metro");
    case WidgetFamily::SwitchesAndPages:
        return QStringLiteral("KivWidgets: Switches and Pages");
    }
    return {};
}

QString CustomWidget::toolTip() const
{
    return QLatin1String(description.toolTip);
}

QString CustomWidget::whatsThis() const
{
    return QStringLiteral("<b>%1</b><p>%2.</p><p>%3</p>")
        .arg(name(), toolTip(), QLatin1String(description.use));
}

QString CustomWidget::includeFile() const
{
    return QStringLiteral("KivWidgets/%1.h").arg(name().toLower());
}

QIcon CustomWidget::icon() const
{
    if (drawnIcon.isNull())
        drawnIcon = description.drawIcon();
    return drawnIcon;
}

bool CustomWidget::isContainer() const
{
    return description.isContainer;
}

QWidget *CustomWidget::createWidget(QWidget *parent)
{
    return description.create(parent);
}

bool CustomWidget::isInitialized() const
{
    return initialized;
}

void CustomWidget::initialize(QDesignerFormEditorInterface *editor)
{
    // Form loaders have no editor. One factory serves all boxes.
    if (editor && !initialized && description.metaObject == &AeroGroupbox::staticMetaObject)
        DesignableSheetFactory::registerWith(editor);
    initialized = true;
}

QString CustomWidget::domXml() const
{
    QString properties;
    if (description.label.property) {
        properties = QStringLiteral("<property name=\"%1\"><string>%2</string></property>")
                         .arg(QLatin1String(description.label.property),
                              QLatin1String(description.label.text));
    }
    // Without its base class a form would take each widget for a plain QWidget, and compiled forms
    // would leave the pages of a stack out.
    const QString objectName = name().at(0).toLower() + name().mid(1);
    return QStringLiteral("<ui language=\"c++\">"
                          "<widget class=\"%1\" name=\"%2\">"
                          "<property name=\"geometry\">"
                          "<rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect>"
                          "</property>"
                          "<property name=\"minimumSize\">"
                          "<size><width>%5</width><height>%6</height></size>"
                          "</property>%7%8</widget>"
                          "<customwidgets><customwidget>"
                          "<class>%1</class><extends>%9</extends>%10"
                          "</customwidget></customwidgets></ui>")
        .arg(name(), objectName)
        .arg(description.size.width())
        .arg(description.size.height())
        .arg(description.minimumSize.width())
        .arg(description.minimumSize.height())
        .arg(properties, QLatin1String(description.formContents),
             QLatin1String(description.metaObject->superClass()->className()),
             QLatin1String(description.formHints));
}
