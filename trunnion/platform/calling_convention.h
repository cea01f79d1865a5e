// How programs outside C++ call the library.
#pragma once

// Stands between the result and the name of a function that Basic programs call. They push the
// arguments and leave it to the function to remove them, which 32-bit Windows calls __stdcall;
// every other system has one convention for all languages.
#if defined(_WIN32) && !defined(_WIN64)
#define TRUNNION_BASIC_CALL __stdcall
#else
#define TRUNNION_BASIC_CALL
#endif
