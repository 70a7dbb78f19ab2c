// Included before all else for the memory sanitizer: strings and streams are compiled here, and not taken from the
// standard library's own object code, whose writes the sanitizer does not see.
#include <bits/c++config.h>
#undef _GLIBCXX_EXTERN_TEMPLATE
#define _GLIBCXX_EXTERN_TEMPLATE 0
