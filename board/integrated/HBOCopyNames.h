// The name rule of deep copies, and the copy of a list of owned objects. Everything that a daughter
// board brings into an integrated board is named after the base connector it sits on, so that two
// daughters, or one daughter on two connectors, never clash.
#ifndef BOARDLIB_HBOCOPYNAMES_H
#define BOARDLIB_HBOCOPYNAMES_H

#include <string>
#include <vector>

namespace HBOCopyNames {
/// "P_N", or N as it is for an empty prefix.
inline std::string name(const std::string &prefix, const std::string &name) {
  return prefix.empty() ? name : prefix + "_" + name;
}
/// "D (P)", or D as it is for an empty prefix.
inline std::string displayName(const std::string &prefix, const std::string &display) {
  return prefix.empty() ? display : display + " (" + prefix + ")";
}
/// "P_N" whatever P is: JTAG chains, preset keys and jumper names in
/// expressions are always joined.
inline std::string joined(const std::string &prefix, const std::string &name) {
  return prefix + "_" + name;
}
/// Appends to \p to a copy of each object of \p from, made by \p copy;
/// null entries are dropped.
template <typename T, typename Copy>
void copyEach(const std::vector<T *> &from, std::vector<T *> &to, Copy copy) {
  to.reserve(to.size() + from.size());
  for (const T *object : from)
    if (object)
      to.push_back(copy(*object));
}
} // namespace HBOCopyNames

#endif
