// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QObject>

/// A style base that is a Python object of its own, apart from its owner. It can outlive the owner:
/// from then on its update requests have no effect.
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
