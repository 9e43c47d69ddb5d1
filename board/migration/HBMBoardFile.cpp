#include "HBMBoardFile.h"

#include "HXMLWElement.h"

#include <iostream>

bool HBMBoardFile::parse(HXMLWElement *root) {
  std::string error;
  return readComponents(root, error);
}

bool HBMBoardFile::readComponents(HXMLWElement *root, std::string &error) {
  if (!root || root->isNull()) {
    error = "Root XML element is NULL";
    return false;
  }
  for (HXMLWElement components : root->children("components"))
    for (HXMLWElement component : components.children())
      std::cout << "Component: " << component.getAttribute("name") << "\n";
  return true;
}

void HBMBoardFile::write(std::ofstream &) const {}
