// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include "kivglobal.h"

#include <QtCore/QMutex>
#include <QtGui/QColor>

class QImage;
class QObject;

/// State of a supervised element: its alarm state and its operating state.
///
/// | alarmSt | meaning            | elemSt | meaning                          |
/// |---------|--------------------|--------|----------------------------------|
/// | 0       | communication lost | 0      | no state known                   |
/// | 1       | no alarm           | 1      | stand-by                         |
/// | 2       | warning            | 2      | precharge                        |
/// | 3       | anomaly (as 2)     | 3      | calibration                      |
/// | 4       | fault              | 4      | waiting for the battery voltage  |
/// | 5       | locked             | 5      | on                               |
/// |         |                    | 6      | on battery                       |
/// |         |                    | 7      | on bypass                        |
struct elemDesc_t
{
    quint8 alarmSt; ///< the alarm state
    quint8 elemSt;  ///< the operating state
};

/// Whether both bytes are equal.
KIVWIDGETS_EXPORT bool operator==(elemDesc_t a, elemDesc_t b);
/// Whether at least one byte differs.
KIVWIDGETS_EXPORT bool operator!=(elemDesc_t a, elemDesc_t b);

/// The state and the colours that all Metro widgets share.
///
/// A widget derives from its Qt class first and from this class second. A new widget has the state
/// {1, 0}, no alarm and no state known, whose colour is light grey.
class KIVWIDGETS_EXPORT MetroStyle
{
public:
    /// The colours of the states, indexed by getColorIdx(): 0 dark grey (a state that is not in the
    /// tables), 1 light blue (in order), 2 orange (on battery), 3 dark blue (on bypass), 4 light
    /// grey (communication lost or no state known), 5 orange (warning or anomaly), 6 red (fault or
    /// locked).
    static const QColor COLORTAB[7];

    /// Values of elemDesc_t::alarmSt.
    enum class AlarmState : quint8 {
        CommunicationLost = 0,
        None = 1,
        Warning = 2,
        Anomaly = 3, ///< looks like a warning
        Fault = 4,
        Locked = 5,
    };
    /// Values of elemDesc_t::elemSt.
    enum class OperatingState : quint8 {
        Unknown = 0,
        StandBy = 1,
        Precharge = 2,
        Calibration = 3,
        WaitBatteryVoltage = 4,
        On = 5,
        OnBattery = 6,
        OnBypass = 7,
    };

    /// @p owner is the widget that derives from this class; it gets the update requests.
    explicit MetroStyle(QObject *owner);
    virtual ~MetroStyle();

    /// Stores the state and posts a QEvent::UpdateRequest to the owner, which repaints when it gets
    /// the event. An equal state does nothing. Any thread may call it, because it only stores and
    /// posts; the stored state is not locked.
    void setState(elemDesc_t st);
    /// The state that was set last, even if the widget does not show it yet. It is read without a
    /// lock.
    elemDesc_t getElementState() const;

    /// The index into COLORTAB for the stored state. An alarm state that is not in the table writes
    /// an error line and gives 0. So does an operating state that is not in the table, if there is
    /// no alarm.
    int getColorIdx();

    /// Takes the lock, deletes *@p image if it exists, and marks the widget dirty. Any thread may
    /// call it. Painting does not take the lock, so the application must not call it while the same
    /// image is being painted.
    void repaintSchedule(QImage **image);

protected:
    QMutex lock;
    elemDesc_t state;
    bool dirty;
    QObject *owner;
};
