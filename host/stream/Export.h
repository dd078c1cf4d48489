#ifndef OLMKIT_HOST_STREAM_EXPORT_H
#define OLMKIT_HOST_STREAM_EXPORT_H

// Marks what libolmhost exports. Everything else in the library is hidden: see host/CMakeLists.txt.
#define OLMHOST_EXPORT __attribute__((visibility("default")))

// Hides a class inside one that is exported.
#define OLMHOST_HIDDEN __attribute__((visibility("hidden")))

#endif
