// The reader of legacy board files (schema 1.0 and 1.1).
#ifndef BOARDLIB_HBOPARTPARSER_H
#define BOARDLIB_HBOPARTPARSER_H

#include <string>

class HBOBoard;

class HBOPartParser {
public:
  /// Reads a legacy file into \p board. The legacy reader is not written
  /// yet: every call fails with a message that says so.
  bool parseFile(const std::string &fileName, HBOBoard *board);
};

#endif
