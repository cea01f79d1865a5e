// A part to show when no mesh file is at hand.
#pragma once

#include "soup.h"

// A helical gear on a flange, with hub and bore, in millimetres: a closed surface.
Soup samplePart();
