// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "icons.h"

#include "qtversion_p.h"

#include <QtGui/QIconEngine>
#include <QtGui/QPainter>

namespace {

class SizelessEngine : public QIconEngine
{
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        painter->fillRect(rect, Qt::green);
    }
    QPixmap pixmap(const QSize &, QIcon::Mode, QIcon::State) override
    {
        return {};
    }
    QIconEngine *clone() const override
    {
        return new SizelessEngine(*this);
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) KIV_CONST_IN_QT5 override
    {
        return {QSize()};
    }
};

} // namespace

QPixmap plainPixmap(QSize size, const QColor &color)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

QColor telltaleColor(QIcon::Mode mode, QIcon::State state)
{
    const bool on = state == QIcon::On;
    switch (mode) {
    case QIcon::Normal:
        return on ? Qt::green : Qt::red;
    case QIcon::Disabled:
        return on ? Qt::yellow : Qt::blue;
    case QIcon::Active:
        return on ? Qt::cyan : Qt::magenta;
    case QIcon::Selected:
        break;
    }
    return on ? Qt::darkGreen : Qt::darkRed;
}

QIcon telltaleIcon(QSize size)
{
    QIcon icon;
    for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Disabled, QIcon::Active}) {
        for (const QIcon::State state : {QIcon::Off, QIcon::On})
            icon.addPixmap(plainPixmap(size, telltaleColor(mode, state)), mode, state);
    }
    return icon;
}

QIcon sizelessIcon()
{
    return QIcon(new SizelessEngine);
}
