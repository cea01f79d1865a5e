// The export macro: marks what a caller of the shared library can reach. Everything else stays
// hidden.
#pragma once

#if defined(TRUNNION_STATIC)
#define TRUNNION_API
#elif defined(_WIN32)
#if defined(TRUNNION_BUILDING)
#define TRUNNION_API __declspec(dllexport)
#else
#define TRUNNION_API __declspec(dllimport)
#endif
#else
#define TRUNNION_API __attribute__((visibility("default")))
#endif
