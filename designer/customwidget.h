#pragma once

#include <QtCore/QString>
#include <QtGui/QIcon>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/// What Qt Designer is told of one widget.
struct WidgetDescription
{
    const char *className;
    const char *group;      ///< in the widget box
    const char *toolTip;    ///< what it shows, in a few words
    const char *properties; ///< for a new one on a form, as elements of a form's XML
    int width;              ///< of a new one on a form, in pixels
    int height;
    bool isContainer; ///< whether other widgets are put into it
    QWidget *(*create)(QWidget *parent);
    /// Brings a widget into the state that its icon shows.
    void (*dressForIcon)(QWidget *widget);
};

/// One widget as Qt Designer sees it.
class CustomWidget : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    CustomWidget(const WidgetDescription &description, QObject *parent);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    /// Drawn by the widget itself.
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget *createWidget(QWidget *parent) override;
    QString domXml() const override;

private:
    const WidgetDescription &description;
    mutable QIcon drawnIcon;
};
