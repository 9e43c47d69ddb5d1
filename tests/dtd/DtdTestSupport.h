// What the DTD tests share: where our DTDs are, and the count of findings.
#ifndef BOARDLIB_TESTS_DTD_DTDTESTSUPPORT_H
#define BOARDLIB_TESTS_DTD_DTDTESTSUPPORT_H

#include "TestSupport.h"

#include <string>

namespace test {

inline const std::string kSchemaDir = BOARDLIB_SCHEMA_DIR;

/// The findings of a validation, as the recorder saw them.
inline std::size_t findingCount(const MessageRecorder &msgs) {
  return msgs.count("49-105") + msgs.count("49-106");
}

/// A board that the DTD accepts, with \p body inside its root element. The
/// root element stands on line 2, \p body begins on line 4.
inline std::string boardText(const std::string &body) {
  return BoardBuilder().body(body).boardXml();
}

} // namespace test

#endif
