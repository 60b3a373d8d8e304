// SPDX-License-Identifier: LicenseRef-all-rights-reserved

// A library that needs more than the widgets may: its link line says what.
int kivNeedy()
{
    return 0;
}
