// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QObject>

/// A style base that a Python object holds by itself, beside its owner. It outlives the owner
/// unharmed: from then on its update requests go nowhere.
template <class Style>
class KivOwnedStyle : public Style
{
public:
    template <class Owner>
    explicit KivOwnedStyle(Owner *owner)
        : Style(owner)
        , ownerGone(QObject::connect(owner, &QObject::destroyed, owner,
                                     [this] { this->owner = &nobody; }))
    {}
    ~KivOwnedStyle() override
    {
        QObject::disconnect(ownerGone);
    }
    Q_DISABLE_COPY(KivOwnedStyle)

private:
    QObject nobody;
    QMetaObject::Connection ownerGone;
};
