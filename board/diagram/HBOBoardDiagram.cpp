#include "HBOBoardDiagram.h"

#include "HBOBoard.h"

#include <fstream>

namespace {
std::string escaped(const std::string &text) {
  std::string out;
  for (char c : text) {
    switch (c) {
    case '&':
      out += "&amp;";
      break;
    case '<':
      out += "&lt;";
      break;
    case '>':
      out += "&gt;";
      break;
    case '"':
      out += "&quot;";
      break;
    default:
      out += c;
    }
  }
  return out;
}
} // namespace

namespace HBOBoardDiagram {

// A placeholder until the layout lands: the board's name in a box.
std::string toSvg(const HBOBoard &board, const HBODiagramOptions &) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"400\" height=\"100\" "
         "viewBox=\"0 0 400 100\">\n"
         "<rect x=\"1\" y=\"1\" width=\"398\" height=\"98\" fill=\"none\" stroke=\"black\"/>\n"
         "<text x=\"200\" y=\"55\" text-anchor=\"middle\">" +
         escaped(board.getName()) + "</text>\n</svg>\n";
}

bool writeSvg(const HBOBoard &board, const std::string &path, const HBODiagramOptions &options) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << toSvg(board, options);
  return static_cast<bool>(out);
}

} // namespace HBOBoardDiagram
