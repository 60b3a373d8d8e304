// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

class QString;

namespace KivPrivate {

/// The text that the printf format @p format gives for one number.
///
/// Characters of Latin-1, such as "°" and "µ", show as they are; any other character becomes "?".
/// A format whose Latin-1 bytes are valid UTF-8 by themselves shows what these mean.
///
/// An integer conversion gets @p value truncated towards zero to an int, a floating-point
/// conversion the value itself; length modifiers that ask for another argument are passed over. A
/// format without a conversion gives its text, as does a percent sign that begins none. A format
/// that asks for more than one argument, for one that is not a number (%s, %c, %p, %n, *), or for a
/// field wider than any screen is shown as it stands.
QString formatValue(const QString &format, double value);

} // namespace KivPrivate
