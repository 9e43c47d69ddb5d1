// Writes a synthetic installation for the load benchmark: N boards laid out
// as a data directory, each with a board.xml, a pin file and a preset file
// of the size and shape of a real evaluation board: hundreds of FPGA pins
// spread over I/O banks, dozens of components with their interfaces, modes
// and connections, presets with many parameters, jumpers, power rails and
// operating conditions. The same seed gives the same bytes, so runs on
// different days measure the same work.
#ifndef BOARDLIB_BENCHGENERATOR_H
#define BOARDLIB_BENCHGENERATOR_H

#include <cstdint>
#include <string>
#include <vector>

class BenchGenerator {
public:
  /// What the last generate wrote, to tell the shape of the installation.
  struct Stats {
    std::uint64_t boardXmlBytes = 0;
    std::uint64_t pinFileBytes = 0;
    std::uint64_t presetBytes = 0;
    std::uint64_t pins = 0; // FPGA pins in the pin files
    std::uint64_t components = 0;
    std::uint64_t interfaces = 0;
    std::uint64_t presetParameters = 0; // plain and nested, user and model
    int minPins = 0, maxPins = 0;
    int minComponents = 0, maxComponents = 0;
    int minInterfaces = 0, maxInterfaces = 0;
    std::uint64_t minBoardBytes = 0, maxBoardBytes = 0;
  };

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
  const Stats &getStats() const { return m_stats; }

private:
  int m_boardCount = 1000;
  std::uint32_t m_seed = 1;
  std::vector<std::string> m_boardFiles;
  std::uint64_t m_bytesWritten = 0;
  Stats m_stats;
};

#endif
