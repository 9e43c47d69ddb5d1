// A process-wide pool of immutable strings: each distinct text is stored
// once and handed out by a reference that stays valid for the whole process.
// Board files repeat the same short values over and over (I/O standards,
// bank numbers, drive strengths, property names), across pins and across
// boards; a pointer to the shared text costs 8 bytes where a string of its
// own costs 32 and often an allocation.
//
// Thread-safe: boards are read by several workers at once. The pool only
// grows, so a text once interned stays for the life of the process; intern
// only values drawn from a small vocabulary, never names that are unique to
// one object.
#ifndef BOARDLIB_PLATFORM_HSTINTERN_H
#define BOARDLIB_PLATFORM_HSTINTERN_H

#include <cstddef>
#include <string>
#include <string_view>

namespace HSTIntern {

/// The pooled copy of \p text; equal texts give the same object.
const std::string &get(std::string_view text);
/// The pooled copies of \p count texts, into \p out, as get would give
/// them one by one. Faster for many texts at once: the places where they
/// are looked for are fetched into the processor's caches together.
void getMany(const std::string_view *texts, std::size_t count, const std::string **out);
/// The pooled empty string.
const std::string &empty();
/// The number of distinct texts pooled so far.
std::size_t size();

} // namespace HSTIntern

#endif
