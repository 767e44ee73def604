// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Finder.h"

#include "moc_Finder.cpp"
