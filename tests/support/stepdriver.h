// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QAnimationDriver>

/// Advances the animations only when step() is called.
class StepDriver : public QAnimationDriver
{
public:
    StepDriver()
    {
        install();
    }
    ~StepDriver() override
    {
        uninstall();
    }
    qint64 elapsed() const override
    {
        return now;
    }
    /// Qt counts from the start of the driver.
    void start() override
    {
        now = 0;
        QAnimationDriver::start();
    }
    void step(int msecs)
    {
        now += msecs;
        advanceAnimation();
    }

private:
    qint64 now = 0;
};
