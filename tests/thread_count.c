/* Preloaded into a program: writes a line to standard error for each thread that the program starts. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <pthread.h>
#include <stdio.h>

__attribute__((visibility("default"))) int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                                          void* (*start)(void*), void* argument) {
  int (*real)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  *(void**)&real = dlsym(RTLD_NEXT, "pthread_create");
  fputs("a thread\n", stderr);
  return real(thread, attributes, start, argument);
}
