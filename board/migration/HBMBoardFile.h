// The board.xml of a board directory for the rewrite tool. Rewriting the
// board file itself is no part of the tool: it is read only to list its
// components, and written as an empty file.
#ifndef BOARDLIB_HBMBOARDFILE_H
#define BOARDLIB_HBMBOARDFILE_H

#include <fstream>
#include <string>

class HXMLWElement;

class HBMBoardFile {
public:
  /// Lists the components of \p root on standard output, one
  /// "Component: NAME" line each; nothing is kept. False for a null root.
  bool parse(HXMLWElement *root);
  /// Walks the components elements of \p root (any case) and prints each
  /// component. A null root sets \p error and gives false.
  bool readComponents(HXMLWElement *root, std::string &error);
  /// Writes nothing, so that board.xml comes out empty.
  void write(std::ofstream &out) const;
};

#endif
