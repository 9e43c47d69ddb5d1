// The connector compatibility caches of a reference board: for each of its
// connectors, the daughter connectors of the repository that are declared
// to fit, that fit in whole and that fit in part. Computing them walks
// every pin of every daughter interface, so the repositories do it once per
// load or refresh and the consoles only look up.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOCommon.h"
#include "HUTConvert.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/split.hpp>

#include <map>
#include <set>
#include <utility>

namespace {

void append(HBOBoard::ConnectorCache &cache, const HBOBoardComponent *base,
            HBOBoardComponent *daughter) {
  if (base && daughter)
    cache[base->getName()].push_back(daughter);
}

bool listed(const HBOBoard::ConnectorCache &cache, const HBOBoardComponent &base,
            const HBOBoardComponent &daughter) {
  auto it = cache.find(base.getName());
  if (it == cache.end())
    return false;
  for (const HBOBoardComponent *component : it->second) {
    if (component == &daughter)
      return true;
  }
  return false;
}

void appendList(const HBOBoard::ConnectorCache &cache, const std::string &key,
                HSTVector<HBOBoardComponent *> &out) {
  auto it = cache.find(key);
  if (it != cache.end())
    out.insert(out.end(), it->second.begin(), it->second.end());
}

} // namespace

namespace {

HSTVector<HBOBoardComponent *> daughterConnectorsOf(const std::vector<HBOBoard *> &boards) {
  HSTVector<HBOBoardComponent *> daughterConnectors;
  for (const HBOBoard *board : boards) {
    if (board && board->isDaughterBoard())
      board->getConnectorsList(daughterConnectors);
  }
  return daughterConnectors;
}

} // namespace

void HBOBoard::rebuildConnectorsCompatibilityCache(const std::vector<HBOBoard *> &boards) {
  if (!isReferenceBoard())
    return;
  rebuildConnectorsCompatibilityCache(daughterConnectorsOf(boards));
}

void HBOBoard::rebuildConnectorsCompatibilityCaches(const std::vector<HBOBoard *> &boards) {
  const HSTVector<HBOBoardComponent *> daughterConnectors = daughterConnectorsOf(boards);
  for (HBOBoard *board : boards) {
    if (board)
      board->rebuildConnectorsCompatibilityCache(daughterConnectors);
  }
}

void HBOBoard::rebuildConnectorsCompatibilityCache(
    const HSTVector<HBOBoardComponent *> &daughterConnectors) {
  if (!isReferenceBoard())
    return;
  m_partiallyCompatibleConnectors.clear();
  m_fullyCompatibleConnectors.clear();
  m_explicitlyCompatibleConnectors.clear();
  HSTVector<HBOBoardComponent *> baseConnectors;
  getConnectorsList(baseConnectors);
  const HBOBoardComponent *fpga = getActivePart();
  for (const HBOBoardComponent *base : baseConnectors) {
    for (HBOBoardComponent *daughter : daughterConnectors) {
      if (!daughter)
        continue;
      // One list per pair, a declaration first.
      if (HBOBoardComponent::isExplicitlyCompatibleWithConnector(daughter, base))
        addToExplicitlyCompatibleConnectorsList(base, daughter);
      else if (base->isFullCompatibleWithConnector(fpga, daughter, base))
        addToFullyCompatibleConnectorsList(base, daughter);
      else if (base->isPartialCompatibleWithConnector(fpga, daughter, base))
        addToPartiallyCompatibleConnectorsList(base, daughter);
    }
  }
}

void HBOBoard::addToPartiallyCompatibleConnectorsList(const HBOBoardComponent *base,
                                                      HBOBoardComponent *daughter) {
  append(m_partiallyCompatibleConnectors, base, daughter);
}

void HBOBoard::addToFullyCompatibleConnectorsList(const HBOBoardComponent *base,
                                                  HBOBoardComponent *daughter) {
  append(m_fullyCompatibleConnectors, base, daughter);
}

void HBOBoard::addToExplicitlyCompatibleConnectorsList(const HBOBoardComponent *base,
                                                       HBOBoardComponent *daughter) {
  append(m_explicitlyCompatibleConnectors, base, daughter);
}

void HBOBoard::getCompatibleConnectorsList(const HBOBoardComponent &base,
                                           HSTVector<HBOBoardComponent *> &out) const {
  const std::string &key = base.getName();
  if (m_explicitlyCompatibleConnectors.count(key)) {
    // What the daughter board's maker declared overrides what the pins say.
    appendList(m_explicitlyCompatibleConnectors, key, out);
    return;
  }
  appendList(m_partiallyCompatibleConnectors, key, out);
  appendList(m_fullyCompatibleConnectors, key, out);
}

void HBOBoard::getLatestCompatibleConnectorsList(const HBOBoardComponent &base,
                                                 HSTVector<HBOBoardComponent *> &out) const {
  HSTVector<HBOBoardComponent *> all;
  getCompatibleConnectorsList(base, all);
  filterLatestConnectors(all, out);
}

void HBOBoard::filterLatestConnectors(const HSTVector<HBOBoardComponent *> &all,
                                      HSTVector<HBOBoardComponent *> &out) {
  if (all.empty())
    return;
  std::set<HBOBoardComponent *> kept;
  std::map<std::string, std::pair<double, HBOBoardComponent *>> newest;
  for (HBOBoardComponent *component : all) {
    if (!component)
      continue;
    std::vector<std::string> fields;
    boost::split(fields, HBOCommon::toLowerCopy(component->getName()), boost::is_any_of(":"),
                 boost::token_compress_on);
    double version = 0;
    if (fields.size() != 4 || !HUTConvert::stringToDouble(fields[3], version)) {
      kept.insert(component);
      continue;
    }
    // Versions compare as numbers on purpose: 1.10 ranks below 1.9.
    fields.pop_back();
    const std::string family = boost::algorithm::join(fields, ":");
    auto it = newest.find(family);
    if (it == newest.end())
      newest.emplace(family, std::make_pair(version, component));
    else if (version > it->second.first)
      it->second = std::make_pair(version, component);
  }
  for (const auto &entry : newest)
    kept.insert(entry.second.second);
  out.insert(out.end(), kept.begin(), kept.end());
}

bool HBOBoard::isConnectorFullCompatibleWithConnector(const HBOBoardComponent &base,
                                                      const HBOBoardComponent &daughter) const {
  return listed(m_fullyCompatibleConnectors, base, daughter);
}

bool HBOBoard::isConnectorPartialCompatibleWithConnector(const HBOBoardComponent &base,
                                                         const HBOBoardComponent &daughter) const {
  return listed(m_partiallyCompatibleConnectors, base, daughter);
}
