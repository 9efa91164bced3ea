// The one export macro: the shared library's boundary is its exported classes.
#ifndef KORVO_EXPORT_H_
#define KORVO_EXPORT_H_

#if defined(KORVO_STATIC)
#define KORVO_EXPORT
#elif defined(_WIN32)
#if defined(KORVO_BUILDING)
#define KORVO_EXPORT __declspec(dllexport)
#else
#define KORVO_EXPORT __declspec(dllimport)
#endif
#else
#define KORVO_EXPORT __attribute__((visibility("default")))
#endif

#endif  // KORVO_EXPORT_H_
