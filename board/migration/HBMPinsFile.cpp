#include "HBMPinsFile.h"

#include "HBOPinProps.h"
#include "HXMLWElement.h"

#include <unordered_set>

bool HBMPinsFile::parse(HXMLWElement *root) {
  clear();
  if (!root || root->isNull())
    return false;
  std::string partName;
  if (root->getAttribute("part_name", partName))
    setPartName(partName);

  const std::vector<std::string> &propNames = HBOPinProps::getPortPropNames();
  // Indexes and LOCs met so far in this file: a pin file names each once.
  std::unordered_set<std::string> indexes, locs;
  for (HXMLWElement pins : root->children("pins")) {
    for (HXMLWElement element : pins.children()) {
      std::string name = element.getAttribute("name");
      std::string index;
      if (!element.getAttribute("index", index) || !indexes.insert(index).second)
        return false;
      std::string loc = element.getAttribute("loc");
      if (!locs.insert(loc).second)
        return false;
      HBMPin *pin = new HBMPin(std::move(name), std::move(index), std::move(loc));
      for (const std::string &propName : propNames) {
        std::string_view value = element.getAttributeView(propName.c_str());
        if (!value.empty())
          pin->setProp(propName, std::string(value));
      }
      addPin(pin);
    }
  }
  return true;
}

void HBMPinsFile::write(std::ofstream &out) const {
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n\n";
  out << "<part_info part_name=\"" << getPartName() << "\">\n";
  const std::size_t count = getPins().size();
  for (std::size_t i = 0; i < count; ++i)
    writePin(out, static_cast<int>(i));
  out << "</part_info>\n";
}

void HBMPinsFile::writePin(std::ostream &out, int i) const {
  const HBMPin *pin = getPinByIndex(i);
  if (!pin)
    return;
  out << "<pin index=\"" << pin->getIndex() << "\" name=\"" << pin->getName() << "\" loc=\""
      << pin->getLOC() << "\"";
  for (const auto &prop : pin->getAllProps())
    out << ' ' << prop.first << '"' << prop.second << '"';
  out << "/>\n";
}

HBMPin *HBMPinsFile::getPin(const std::string &name) const {
  for (HBMPin *pin : getPins())
    if (pin->getName() == name)
      return pin;
  return nullptr;
}

HBMPin *HBMPinsFile::createPin(const std::string &name, const std::string &index,
                               const std::string &loc) const {
  return new HBMPin(name, index, loc);
}
