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
    quint8 alarmSt; ///< how the element is doing
    quint8 elemSt;  ///< what it is doing
};

/// Whether both bytes are equal.
KIVWIDGETS_EXPORT bool operator==(elemDesc_t a, elemDesc_t b);
/// Whether a byte differs.
KIVWIDGETS_EXPORT bool operator!=(elemDesc_t a, elemDesc_t b);

/// The state and the colours that all Metro widgets share.
///
/// A widget derives from its Qt class first and from this class second. A new widget's state is
/// {1, 0}, no alarm and no state known, which shows light grey.
class KIVWIDGETS_EXPORT MetroStyle
{
public:
    /// The colours of the states, by the index that getColorIdx() gives: 0 dark grey (unforeseen
    /// state), 1 light blue (in order), 2 orange (on battery), 3 dark blue (on bypass), 4 light
    /// grey (communication lost), 5 orange (warning), 6 red (fault, locked).
    static const QColor COLORTAB[7];

    /// Values of elemDesc_t::alarmSt: how an element is doing.
    enum class AlarmState : quint8 {
        CommunicationLost = 0,
        None = 1,
        Warning = 2,
        Anomaly = 3, ///< shows as a warning
        Fault = 4,
        Locked = 5,
    };
    /// Values of elemDesc_t::elemSt: what an element is doing.
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

    /// Stores a state that differs from the one held and posts a QEvent::UpdateRequest to the
    /// owner, which repaints when the event arrives. It only stores and posts, so any thread may
    /// call it; the stored state is not locked.
    void setState(elemDesc_t st);
    /// The state held: the last one set, also before the widget shows it. It is read without a
    /// lock.
    elemDesc_t getElementState() const;

    /// The index into COLORTAB for the stored state. An alarm state, or without an alarm an
    /// operating state, that is not in the table writes an error line and gives 0.
    int getColorIdx();

    /// Deletes *@p image if there is one and marks the widget dirty, under the lock. Any thread; a
    /// paint of the same image does not take the lock, so the application must keep the two apart.
    void repaintSchedule(QImage **image);

protected:
    QMutex lock;
    elemDesc_t state;
    bool dirty;
    QObject *owner;
};
