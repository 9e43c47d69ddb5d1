#include "HBOPartParser.h"
#include "HBOBoard.h"

bool HBOPartParser::parseFile(const std::string &, HBOBoard *board) {
  // Thrown as text, the form in which a parser reports a fatal condition;
  // the caller tells it with the file's name.
  throw std::string("board files of schema " +
                    (board ? board->getBoardSchemaVersion() : std::string("1.0")) +
                    " (legacy board parts) cannot be read yet; set schema_version=\"2.0\" or "
                    "above on the root element if the file follows schema 2");
}
