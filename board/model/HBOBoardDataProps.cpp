#include "HBOBoardDataProps.h"

#include <cassert>
#include <utility>
#include <vector>

const char *const HBOBoardDataProps::s_operatingConditions = "OPERATING_CONDITIONS";

namespace {

using DataMap = HBOBoardDataProps::DataMap;
using StringMap = HBOBoardDataProps::StringMap;

// Walks with an explicit stack: the depth of the tree comes from a file.
void flatten(const DataMap &root, StringMap &out) {
  std::vector<std::pair<const DataMap *, std::string>> pending{{&root, std::string()}};
  while (!pending.empty()) {
    const DataMap *group = pending.back().first;
    const std::string prefix = std::move(pending.back().second);
    pending.pop_back();
    for (const auto &entry : *group) {
      std::string key = prefix.empty() ? entry.first : prefix + "." + entry.first;
      if (const std::string *text = boost::any_cast<std::string>(&entry.second))
        out[key] = *text;
      else if (const DataMap *inner = boost::any_cast<DataMap>(&entry.second))
        pending.emplace_back(inner, std::move(key));
      else // The reader stores nothing else; release builds pass it over.
        assert(false && "a data property is neither a string nor a group");
    }
  }
}

} // namespace

void HBOBoardDataProps::setData(const DataMap &data) {
  if (&data == &m_data)
    return;
  m_data = data;
}

const boost::any *HBOBoardDataProps::getData_(const std::string &path) const {
  const DataMap *group = &m_data;
  std::size_t start = 0;
  while (true) {
    const std::size_t dot = path.find('.', start);
    const std::string part =
        path.substr(start, dot == std::string::npos ? std::string::npos : dot - start);
    auto it = group->find(part);
    if (it == group->end())
      return nullptr;
    if (dot == std::string::npos)
      return &it->second;
    group = boost::any_cast<DataMap>(&it->second);
    if (!group)
      return nullptr;
    start = dot + 1;
  }
}

std::string HBOBoardDataProps::getStrDataProp(const std::string &path) const {
  const boost::any *value = getData_(path);
  if (!value)
    return std::string();
  const std::string *text = boost::any_cast<std::string>(value);
  return text ? *text : std::string();
}

HBOBoardDataProps::StringMap HBOBoardDataProps::getMapDataProp(const std::string &path) const {
  StringMap result;
  const boost::any *value = getData_(path);
  if (!value)
    return result;
  if (const DataMap *group = boost::any_cast<DataMap>(value))
    flatten(*group, result);
  return result;
}

bool HBOBoardDataProps::hasOperatingConditions() const {
  auto it = m_data.find(s_operatingConditions);
  return it != m_data.end() && boost::any_cast<DataMap>(&it->second) != nullptr;
}

std::string HBOBoardDataProps::getStrOperatingCondition(const std::string &key) const {
  return getStrDataProp(std::string(s_operatingConditions) + "." + key);
}

HBOBoardDataProps::StringMap
HBOBoardDataProps::getMapOperatingCondition(const std::string &key) const {
  return getMapDataProp(std::string(s_operatingConditions) + "." + key);
}

bool HBOBoardDataProps::getOperatingConditions(StringMap &out) const {
  out = getMapDataProp(s_operatingConditions);
  return hasOperatingConditions();
}

std::string HBOBoardDataProps::asXmlStr(std::size_t indent) const {
  struct Frame {
    const DataMap *group;
    DataMap::const_iterator next;
    std::size_t indent;
  };
  std::string text;
  // The root frame has no tags of its own; every other frame is a group.
  std::vector<Frame> stack{{&m_data, m_data.begin(), indent}};
  while (!stack.empty()) {
    Frame &frame = stack.back();
    if (frame.next == frame.group->end()) {
      if (stack.size() > 1)
        text += std::string(frame.indent - 2, ' ') + "</data_property_group>\n";
      stack.pop_back();
      continue;
    }
    const auto &entry = *frame.next++;
    const std::string blanks(frame.indent, ' ');
    if (const std::string *value = boost::any_cast<std::string>(&entry.second)) {
      text += blanks + "<data_property name=\"" + entry.first + "\" value=\"" + *value + "\"/>\n";
    } else if (const DataMap *inner = boost::any_cast<DataMap>(&entry.second)) {
      text += blanks + "<data_property_group name=\"" + entry.first + "\">\n";
      const std::size_t innerIndent = frame.indent + 2;
      // frame may dangle once the stack grows; nothing uses it after this.
      stack.push_back({inner, inner->begin(), innerIndent});
    }
  }
  return text;
}
