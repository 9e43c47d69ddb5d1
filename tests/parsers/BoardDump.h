// Every field of a board and of what it holds, one per line, in a fixed
// order: what the golden files of the reader tests compare. \p readOk
// tells whether the read that filled the board succeeded.
#ifndef BOARDLIB_TESTS_PARSERS_BOARDDUMP_H
#define BOARDLIB_TESTS_PARSERS_BOARDDUMP_H

#include <string>

class HBOBoard;

std::string dumpBoard(const HBOBoard &board);

#endif
