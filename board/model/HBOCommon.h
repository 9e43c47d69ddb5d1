// Constants and small helpers shared by the board object model: the column
// names of the old pin constraint format, and the case handling that every
// look-up by name relies on.
#ifndef BOARDLIB_HBOCOMMON_H
#define BOARDLIB_HBOCOMMON_H

#include <algorithm>
#include <string>
#include <vector>

namespace HBOCommon {

/// Column names of the old pin constraint format.
extern const char *const PIN_NAME;
extern const char *const PIN_INDEX;
extern const char *const PIN_LOC;
extern const char *const PIN_DIFFTERM;
extern const char *const PIN_DQS_BIAS;
extern const char *const PIN_DRIVE;
extern const char *const PIN_EQUALIZATION;
extern const char *const PIN_IBUF_LOW_PWR;
extern const char *const PIN_IOSTD;
extern const char *const PIN_ODT;
extern const char *const PIN_OUTPUT_IMPEDANCE;
extern const char *const PIN_PRE_EMPHASIS;
extern const char *const PIN_SLEW;
/// The directory separator of board paths.
extern const char *const s_dirSep;

/// Case conversion byte by byte, with the "C" locale's classification, so
/// that look-ups do not depend on the user's locale.
std::string toLowerCopy(const std::string &text);
std::string toUpperCopy(const std::string &text);
void toLowerInPlace(std::string &text);
void toUpperInPlace(std::string &text);
/// Equality ignoring case, with the same classification.
bool iEquals(const std::string &a, const std::string &b);
/// Removes white space at both ends ("C" locale classification).
std::string trimCopy(const std::string &text);

/// An enablement expression with every occurrence of the jumper \p oldName,
/// compared ignoring case, replaced by the lower-cased \p newName.
std::string renameJumper(const std::string &expression, const std::string &oldName,
                         const std::string &newName);

/// Deletes every distinct pointer of \p pointers once; null entries are
/// skipped. Owners whose containers may hold one record twice use this, so
/// that a record entered under two keys is not freed twice.
template <typename T> void deleteDistinct(std::vector<T *> pointers) {
  std::sort(pointers.begin(), pointers.end());
  pointers.erase(std::unique(pointers.begin(), pointers.end()), pointers.end());
  for (T *p : pointers)
    delete p;
}

} // namespace HBOCommon

#endif
