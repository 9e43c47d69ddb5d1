// The platform's vector; used like std::vector at the library's interfaces.
#ifndef BOARDLIB_PLATFORM_HSTVECTOR_H
#define BOARDLIB_PLATFORM_HSTVECTOR_H

#include <vector>

template <typename T> using HSTVector = std::vector<T>;

#endif
