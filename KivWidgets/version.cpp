// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#include "kivglobal.h"

int kivWidgetsVersion()
{
    return KIVWIDGETS_VERSION;
}
