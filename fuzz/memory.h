// Included first for the memory sanitizer: strings and streams are compiled here instead of linked from the standard
// library, whose writes the sanitizer does not see.
#include <bits/c++config.h>
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-macro-identifier"
#undef _GLIBCXX_EXTERN_TEMPLATE
#define _GLIBCXX_EXTERN_TEMPLATE 0
#pragma clang diagnostic pop
