// For preloaded libraries: REAL(function) is the function that would have been called without them.
#pragma once

#include <dlfcn.h>

#ifndef __THROW  // what glibc says in C++ of functions that throw nothing, and musl does not
#define __THROW
#endif

#define REAL(function) REAL_OF(function)
#define REAL_OF(function) reinterpret_cast<decltype(&(function))>(dlsym(RTLD_NEXT, #function))
