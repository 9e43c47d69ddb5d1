// What the fuzz targets share: a scratch folder where an input becomes a
// file beside fixed companions, and a message sink that keeps the console
// quiet. A target gives libFuzzer's entry point, LLVMFuzzerTestOneInput; in
// a fuzzing build libFuzzer drives it, in a normal build ReplayMain does,
// over the inputs that once found a fault.
#ifndef BOARDLIB_TESTS_FUZZSUPPORT_H
#define BOARDLIB_TESTS_FUZZSUPPORT_H

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace fuzz {

/// The scratch folder of this process, made on first use and removed at
/// exit. It holds a copy of the sample board: board.xml, part0_pins.xml and
/// preset.xml, so that an input written over one of them is read with the
/// other two.
const std::string &scratchDir();

/// Writes \p size bytes to \p name in the scratch folder, replacing it, and
/// returns the file's path.
std::string writeInput(const std::string &name, const uint8_t *data, size_t size);

/// Writes the input as \p name, one of the sample board's companion files,
/// and reads the sample board with it, leniently (printing the board, as
/// `boardtool read` does) and held to the DTDs (as `boardtool check` does).
void readBoardWith(const std::string &name, const uint8_t *data, size_t size);

/// Reads the input as the pin file of a board's FPGA, without the rest of
/// the board: leniently and held to its DTD, as the two reads of the board
/// reach it. The board's own file and its DTD would cost five times the
/// pin file, for nothing that depends on the input.
void readPinFileAlone(const uint8_t *data, size_t size);

/// The same for the preset file, as the board's header names it.
void readPresetFileAlone(const uint8_t *data, size_t size);

/// Restores \p name in the scratch folder to the sample board's copy.
void restoreFixed(const std::string &name);

/// Swallows every message, once per process; messages cost more than the
/// reads they report on, and a fuzzer's console must stay readable.
void silenceMessages();

/// The input as text.
inline std::string text(const uint8_t *data, size_t size) {
  return std::string(reinterpret_cast<const char *>(data), size);
}

} // namespace fuzz

#endif
