// Writes a laid-out block diagram as one self-contained SVG document: its
// style sheet inside, generic font families only, no scripts, links or
// images, so that it shows alike in a browser, offline, and inline in a
// page. Every text that comes from a board file is escaped.
//
// Pages and tests rely on its shape: one <g class="component"
// data-name="NAME"> per component (data-kind "fpga", "chip" or "connector",
// data-enabled "false" when the jumper setting turns it off), one
// <path class="connection" data-name="NAME"> per connection, with "disabled"
// added to the class when it is off, and one <g class="legend">; the root
// has viewBox, width and height. The same content gives the same bytes.
#ifndef BOARDLIB_HBODIAGRAMSVGWRITER_H
#define BOARDLIB_HBODIAGRAMSVGWRITER_H

#include <cstddef>
#include <string>

class HBODiagramContent;
class HBODiagramLayout;

class HBODiagramSvgWriter {
public:
  static std::string write(const HBODiagramContent &content, const HBODiagramLayout &layout);

  /// \p text fit for XML text and attribute values: markup characters
  /// escaped, control characters that XML does not allow replaced.
  static std::string escape(const std::string &text);
  /// \p text cut to \p chars characters (not bytes), the last one an
  /// ellipsis when it was cut.
  static std::string shorten(const std::string &text, std::size_t chars);
};

#endif
