#include "customwidget.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <memory>

namespace {

constexpr int iconSide = 24;

/// A picture of @p widget, shrunk into a square.
QPixmap pictureOf(QWidget *widget)
{
    // A window that is never shown lets the widget find its own size without a trace on screen.
    QWidget window;
    widget->setParent(&window);
    widget->move(0, 0);
    window.resize(widget->size());
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.setAttribute(Qt::WA_TranslucentBackground);
    window.show();
    QCoreApplication::sendPostedEvents();
    QPixmap large(widget->size());
    large.fill(Qt::transparent);
    widget->render(&large, QPoint(), QRegion(), QWidget::DrawChildren);
    window.hide();
    widget->setParent(nullptr);

    QPixmap icon(iconSide, iconSide);
    icon.fill(Qt::transparent);
    const QPixmap small =
        large.scaled(iconSide, iconSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&icon);
    painter.drawPixmap((iconSide - small.width()) / 2, (iconSide - small.height()) / 2, small);
    return icon;
}

} // namespace

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
    return QLatin1String(description.group);
}

QString CustomWidget::toolTip() const
{
    return QLatin1String(description.toolTip);
}

QString CustomWidget::whatsThis() const
{
    return toolTip();
}

QString CustomWidget::includeFile() const
{
    return QStringLiteral("KivWidgets/%1.h").arg(name().toLower());
}

QIcon CustomWidget::icon() const
{
    if (drawnIcon.isNull()) {
        const std::unique_ptr<QWidget> widget(description.create(nullptr));
        // A long widget would shrink to a line.
        widget->resize(std::min(description.width, description.height * 5 / 2), description.height);
        if (description.dressForIcon)
            description.dressForIcon(widget.get());
        drawnIcon = QIcon(pictureOf(widget.get()));
    }
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

QString CustomWidget::domXml() const
{
    const QString objectName = name().at(0).toLower() + name().mid(1);
    return QStringLiteral("<ui language=\"c++\">"
                          "<widget class=\"%1\" name=\"%2\">"
                          "<property name=\"geometry\">"
                          "<rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect>"
                          "</property>%5</widget></ui>")
        .arg(name(), objectName)
        .arg(description.width)
        .arg(description.height)
        .arg(QLatin1String(description.properties));
}
