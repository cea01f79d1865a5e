// Facets as they stand in a mesh file: three corners each, nothing shared.
#pragma once

#include <array>
#include <vector>

using Corner = std::array<float, 3>;
using Facet = std::array<Corner, 3>;
using Soup = std::vector<Facet>;
