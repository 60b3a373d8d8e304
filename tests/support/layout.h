// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QString>

#include <vector>

// The layout of a class is part of the library's binary interface: the bases in their order, then
// the fields in theirs, with nothing between, before or after them, and the virtual functions.

/// A field of an object, or one of its bases.
struct LayoutPart
{
    const char *name;
    std::size_t offset;
    std::size_t size;
    std::size_t alignment;
    bool isBase = false;
};

template <typename Object, typename Field>
LayoutPart layoutPart(const char *name, const Object &object, const Field &field)
{
    const auto *from = reinterpret_cast<const char *>(&object);
    const auto *at = reinterpret_cast<const char *>(&field);
    return {name, std::size_t(at - from), sizeof(Field), alignof(Field)};
}

template <typename Base, typename Object>
LayoutPart layoutBase(const char *name, const Object &object)
{
    LayoutPart part = layoutPart(name, object, static_cast<const Base &>(object));
    part.isBase = true;
    return part;
}

/// Empty when the parts fill an object of this size, each as near to the one before as its
/// alignment allows.
QString gapIn(const std::vector<LayoutPart> &parts, std::size_t size);

/// Empty when the virtual table of the class has a slot for each virtual function of its bases and
/// for @p functions of its own.
QString virtualTableProblem(const char *name, const std::vector<LayoutPart> &parts, int functions);

#define KIV_BASE(B) layoutBase<B>(#B, static_cast<const Self &>(o))
#define KIV_FIELD(F) layoutPart(#F, static_cast<const Self &>(o), o.F)

/// Makes Layout<Class>::problem(), which is empty when the class adds @p functions virtual
/// functions to those of its bases, and has the named KIV_BASE()s and KIV_FIELD()s and no others.
#define KIV_LAYOUT(Class, functions, ...)                                                          \
    struct Layout##Class : Class                                                                   \
    {                                                                                              \
        using Class::Class;                                                                        \
        using Self = Class;                                                                        \
        static QString problem()                                                                   \
        {                                                                                          \
            const Layout##Class o(nullptr);                                                        \
            const std::vector<LayoutPart> parts{__VA_ARGS__};                                      \
            const QString gap = gapIn(parts, sizeof(Class));                                       \
            return gap.isEmpty() ? virtualTableProblem(#Class, parts, functions) : gap;            \
        }                                                                                          \
    }
