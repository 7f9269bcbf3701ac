#pragma once

// One export macro for every public class of the shared library. The library
// is built with hidden visibility, so only what carries this macro is seen.
#if defined(_WIN32)
#  if defined(VUREL_BUILDING)
#    define VUREL_EXPORT __declspec(dllexport)
#  else
#    define VUREL_EXPORT __declspec(dllimport)
#  endif
#else
#  define VUREL_EXPORT __attribute__((visibility("default")))
#endif
