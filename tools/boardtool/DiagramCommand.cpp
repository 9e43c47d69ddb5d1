// boardtool diagram: the block diagram of one board as an SVG picture.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardDiagram.h"
#include "HBOParser.h"

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kAbout[] =
    "Draws the block diagram of one board as an SVG picture: the FPGA with its I/O\n"
    "banks, the other components grouped by kind, each connection as a line labelled\n"
    "with its number of wires (greyed where the jumper setting turns it off), the\n"
    "connectors with the daughter boards of the catalog that fit them, or, on an\n"
    "integrated board, the daughter boards plugged into them, the power rails and a\n"
    "legend. NAME is any name 'boardtool show' takes; FILE the path of a board.xml,\n"
    "read as 'boardtool read' reads it. The picture needs nothing but itself: it\n"
    "shows in a browser offline.\n";

const char kNotes[] = "Exit status: 0 drawn, 1 no such board, the file did not read, a jumper or\n"
                      "value the board does not have, or the picture could not be written, 2 bad\n"
                      "usage.\n";

int draw(const HBOBoard &board, const HBODiagramOptions &options, const std::string &output) {
  if (!HBOBoardDiagram::checkOptions(board, options))
    return Failure;
  if (!output.empty())
    return HBOBoardDiagram::writeSvg(board, output, options) ? Success : Failure;
  std::cout << HBOBoardDiagram::toSvg(board, options);
  std::cout.flush();
  return std::cout ? Success : Failure;
}

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  std::string source;
  if (!load.take(args, error) || !args.oneOperand("board name or file", source, error))
    return usageError(diagramCommand, error);
  HBODiagramOptions options;
  for (const std::string &text : args.values("--jumper")) {
    const std::string::size_type eq = text.find('=');
    if (eq == std::string::npos || eq == 0)
      return usageError(diagramCommand, "--jumper takes NAME=VALUE, not '" + text + "'");
    options.jumpers.emplace_back(text.substr(0, eq), text.substr(eq + 1));
  }
  if (args.has("-o") && args.value("-o").empty())
    return usageError(diagramCommand, "-o takes the name of the file to write");
  const std::string output = args.has("-o") ? absolutePath(args.value("-o")) : std::string();
  load.apply();
  MessageOutput messages(args.jsonMessages());

  if (looksLikeBoardFile(source)) {
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    HBOParser parser;
    if (!parser.parseFile(absolutePath(source), board.get())) {
      std::cerr << "boardtool diagram: '" << source << "' did not read as a board\n";
      return Failure;
    }
    return draw(*board, options, output);
  }

  LoadedCatalog catalog(diagramCommand, false);
  if (!catalog.ok())
    return Failure;
  HBOBoard *board = findOneBoard(diagramCommand, catalog, source);
  if (!board)
    return Failure;
  return draw(*board, options, output);
}

} // namespace

const Command diagramCommand = {
    "diagram",
    cmd::diagram,
    "draw the block diagram of one board as SVG",
    "NAME|FILE",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
