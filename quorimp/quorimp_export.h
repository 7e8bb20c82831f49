/* Symbol visibility of the library. Everything is hidden unless marked with QUORIMP_EXPORT: the C
 * functions and the public classes. */
#ifndef QUORIMP_QUORIMP_EXPORT_H
#define QUORIMP_QUORIMP_EXPORT_H

#if defined(_WIN32) || defined(__CYGWIN__)
#if defined(QUORIMP_BUILDING_LIBRARY)
#define QUORIMP_EXPORT __declspec(dllexport)
#else
#define QUORIMP_EXPORT __declspec(dllimport)
#endif
#elif defined(__GNUC__) || defined(__clang__)
#define QUORIMP_EXPORT __attribute__((visibility("default")))
#else
#define QUORIMP_EXPORT
#endif

#endif
