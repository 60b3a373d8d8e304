#include "icongrowth_p.h"

#include "ownsize_p.h"

#include <QtCore/QSize>
#include <QtWidgets/QAbstractButton>

#include <algorithm>

namespace KivPrivate {

namespace {

/// What the icon needs, held within what a widget can have so that growing comes to an end.
int wanted(int iconExtent)
{
    return int(std::min<qint64>(qint64(iconExtent) + 2, QWIDGETSIZE_MAX));
}

} // namespace

bool growToIcon(QAbstractButton *button)
{
    if (isSizeEnforced(button))
        return false;
    const int width = wanted(button->iconSize().width());
    if (button->width() < width) {
        button->setMinimumWidth(std::max(width, button->minimumWidth()));
        button->setMaximumWidth(std::max(width, button->maximumWidth()));
        button->resize(width, button->height());
        return true;
    }
    const int height = wanted(button->iconSize().height());
    if (button->height() < height) {
        button->setMinimumHeight(std::max(height, button->minimumHeight()));
        button->setMaximumHeight(std::max(height, button->maximumHeight()));
        button->resize(button->width(), height);
        return true;
    }
    return false;
}

} // namespace KivPrivate
