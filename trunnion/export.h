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

// Declares an instantiation of a template that the library holds. A DLL of GCC offers none of its
// inline members, so there the caller's compiler makes those anew.
#if defined(_WIN32) && !defined(TRUNNION_STATIC)
#define TRUNNION_EXTERN_TEMPLATE(...) static_assert(true)
#else
#define TRUNNION_EXTERN_TEMPLATE(...) extern template __VA_ARGS__
#endif
