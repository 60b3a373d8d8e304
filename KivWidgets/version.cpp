#include "kivglobal.h"

int kivWidgetsVersion()
{
    return KIVWIDGETS_VERSION;
}
