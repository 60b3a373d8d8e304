// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

namespace KivPrivate {

/// Stores @p value in @p field if it differs; the comparison is exact, for doubles too.
/// @return whether the field changed.
template <typename Field, typename Value>
bool assignIfChanged(Field &field, const Value &value)
{
    if (field == value)
        return false;
    field = value;
    return true;
}

} // namespace KivPrivate
