// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>
#include <QtGui/QGuiApplication>

namespace KivPrivate {

/// Whether the caller may use what is remembered: in the GUI thread of an application.
inline bool mayRemember()
{
    const QCoreApplication *const application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

enum class EmptiedWith {
    Application,        ///< when the application ends
    ApplicationOrFonts, ///< then, and when fonts come or go
};

/// The data that the library remembers for all of its widgets, one value of each type. It is
/// cleared when the application ends, while its contents can still be deleted, and when the library
/// is unloaded. GUI thread only.
template <typename T, EmptiedWith end = EmptiedWith::Application>
T &applicationMemory()
{
    struct Memory
    {
        T value;
        bool watching = false;
        QMetaObject::Connection fontsChanged;

        static Memory &instance()
        {
            static Memory memory;
            return memory;
        }
        static void forget()
        {
            instance().value = T();
            instance().watching = false;
        }
        void watch()
        {
            watching = true;
            qAddPostRoutine(forget);
            if constexpr (end == EmptiedWith::ApplicationOrFonts) {
                fontsChanged = QObject::connect(qGuiApp, &QGuiApplication::fontDatabaseChanged,
                                                qGuiApp, [] { instance().value = T(); });
            }
        }
        ~Memory()
        {
            // An application may unload the library and live on.
            if (watching)
                qRemovePostRoutine(forget);
            QObject::disconnect(fontsChanged);
        }
    };
    Memory &memory = Memory::instance();
    if (!memory.watching && QCoreApplication::instance())
        memory.watch();
    return memory.value;
}

/// The same for what depends on fonts.
template <typename T>
T &fontMemory()
{
    return applicationMemory<T, EmptiedWith::ApplicationOrFonts>();
}

} // namespace KivPrivate
