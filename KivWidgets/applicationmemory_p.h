#pragma once

#include <QtCore/QCoreApplication>

namespace KivPrivate {

/// What the library remembers for all of its widgets, one value of each type. It is emptied when
/// the application ends, before what it holds loses its base, and when the library is unloaded.
/// GUI thread only.
template <typename T>
T &applicationMemory()
{
    struct Memory
    {
        T value;
        bool watching = false;

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
        ~Memory()
        {
            if (watching)
                qRemovePostRoutine(forget);
        }
    };
    Memory &memory = Memory::instance();
    if (!memory.watching && QCoreApplication::instance()) {
        memory.watching = true;
        qAddPostRoutine(Memory::forget);
    }
    return memory.value;
}

} // namespace KivPrivate
