// Writes a synthetic installation for the load benchmark: N boards laid out
// as a data directory, each with a board.xml, a pin file and a preset file
// of realistic size and shape. The same seed gives the same bytes, so runs
// on different days measure the same work.
#ifndef BOARDLIB_BENCHGENERATOR_H
#define BOARDLIB_BENCHGENERATOR_H

#include <cstdint>
#include <string>
#include <vector>

class BenchGenerator {
public:
  BenchGenerator() = default;

  void setBoardCount(int count) { m_boardCount = count; }
  int getBoardCount() const { return m_boardCount; }
  void setSeed(std::uint32_t seed) { m_seed = seed; }
  std::uint32_t getSeed() const { return m_seed; }

  /// Writes the boards under \p dataDir/boards/board_files. False, with
  /// \p error filled in, when a directory or file cannot be written.
  bool generate(const std::string &dataDir, std::string &error);

  /// Files written by the last generate, and their bytes.
  const std::vector<std::string> &getBoardFiles() const { return m_boardFiles; }
  std::uint64_t getBytesWritten() const { return m_bytesWritten; }

private:
  int m_boardCount = 1000;
  std::uint32_t m_seed = 1;
  std::vector<std::string> m_boardFiles;
  std::uint64_t m_bytesWritten = 0;
};

#endif
