// The door through which every board file enters: it reads the file's
// schema version and hands it to the reader of that schema.
#ifndef BOARDLIB_HBOPARSER_H
#define BOARDLIB_HBOPARSER_H

#include <string>

class HBOBoard;

class HBOParser {
public:
  /// Reads \p fileName into \p board, whatever its schema. True when the
  /// board was read; failures are told as messages, never thrown.
  bool parseFile(const std::string &fileName, HBOBoard *board);
  /// Lifts a board read from a legacy single-part file to the shape of the
  /// current schema, in place, when "board.enableSchemaV2" is on. Its result
  /// means nothing: the board's schema version tells whether it was lifted.
  /// Defined with the rest of the migration.
  bool migrateV1ToV2(HBOBoard *board);
};

#endif
