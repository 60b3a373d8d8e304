// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "threadannotations.h"

#ifdef __SANITIZE_THREAD__

#include <QtCore/QMutex>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <cstdlib>

namespace {

/// Qt's own function behind the one of this file.
template <typename Function>
Function *original(const char *symbol)
{
    void *found = dlsym(RTLD_NEXT, symbol);
    if (!found)
        std::abort();
    return reinterpret_cast<Function *>(found);
}

} // namespace

// These stand before Qt's for all that is instrumented.

void QMutex::lock() QT_MUTEX_LOCK_NOEXCEPT
{
    static auto *const lockIt = original<void(QMutex *)>("_ZN6QMutex4lockEv");
    lockIt(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    static auto *const unlockIt = original<void(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockIt(this);
}

void QCoreApplication::postEvent(QObject *receiver, QEvent *event, int priority)
{
    static auto *const postIt = original<void(QObject *, QEvent *, int)>(
        "_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(receiver);
    postIt(receiver, event, priority);
}

#endif

bool ThreadAnnotations::Application::notify(QObject *receiver, QEvent *event)
{
#ifdef __SANITIZE_THREAD__
    __tsan_acquire(receiver);
#endif
    return QApplication::notify(receiver, event);
}
