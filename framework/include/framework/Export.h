// Marks what libphonelet.so shares with plug-ins and the telephone; everything else in it is hidden.

#pragma once

#ifdef FRAMEWORK_BUILD
#define FRAMEWORK_API __attribute__((visibility("default")))
#else
#define FRAMEWORK_API
#endif
