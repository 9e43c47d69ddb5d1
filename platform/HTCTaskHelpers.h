// Helpers for building Tcl results.
#ifndef BOARDLIB_PLATFORM_HTCTASKHELPERS_H
#define BOARDLIB_PLATFORM_HTCTASKHELPERS_H

#include <string>

namespace HTCTaskHelpers {
/// Quotes \p element as Tcl quotes one element when it builds a list, taking
/// it as the list's first element (so a leading "#" is quoted too): the text
/// as it is when nothing in it is special, "{}" for the empty text, the text
/// in braces when it holds white space or characters such as ; $ [ ] " { },
/// and backslash escapes when braces cannot protect it (unbalanced braces, a
/// final backslash, a backslash before a new line).
std::string brace(const std::string &element);
} // namespace HTCTaskHelpers

#endif
