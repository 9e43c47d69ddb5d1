#include "HXMLWElement.h"
#include "HXMLWInterface.h"

#include <pugixml.hpp>
#include <cstring>
#include <strings.h>

namespace {

inline pugi::xml_node node(pugi::xml_node_struct *n) { return pugi::xml_node(n); }

inline bool isElement(const pugi::xml_node &n) { return n.type() == pugi::node_element; }

} // namespace

std::string HXMLWElement::getTag() const { return m_node ? node(m_node).name() : ""; }

bool HXMLWElement::isTag(const char *tag) const {
  return m_node && strcasecmp(node(m_node).name(), tag) == 0;
}

bool HXMLWElement::isTagExactly(const char *tag) const {
  return m_node && std::strcmp(node(m_node).name(), tag) == 0;
}

std::string HXMLWElement::getText() const {
  std::string text;
  if (!m_node)
    return text;
  for (pugi::xml_node c = node(m_node).first_child(); c; c = c.next_sibling())
    if (c.type() == pugi::node_pcdata || c.type() == pugi::node_cdata)
      text += c.value();
  return text;
}

std::string HXMLWElement::getAttribute(const std::string &name) const {
  if (!m_node)
    return std::string();
  pugi::xml_attribute a = node(m_node).attribute(name.c_str());
  return a ? a.value() : "";
}

bool HXMLWElement::getAttribute(const std::string &name, std::string &out) const {
  if (!m_node)
    return false;
  pugi::xml_attribute a = node(m_node).attribute(name.c_str());
  if (!a)
    return false;
  out = a.value();
  return true;
}

bool HXMLWElement::hasAttribute(const std::string &name) const {
  return m_node && node(m_node).attribute(name.c_str());
}

std::size_t HXMLWElement::getAttributeCount() const {
  std::size_t count = 0;
  if (m_node)
    for (pugi::xml_attribute a = node(m_node).first_attribute(); a; a = a.next_attribute())
      ++count;
  return count;
}

std::string HXMLWElement::getAttributeName(std::size_t index) const {
  if (!m_node)
    return std::string();
  for (pugi::xml_attribute a = node(m_node).first_attribute(); a; a = a.next_attribute())
    if (index-- == 0)
      return a.name();
  return std::string();
}

std::string HXMLWElement::getAttributeValue(std::size_t index) const {
  if (!m_node)
    return std::string();
  for (pugi::xml_attribute a = node(m_node).first_attribute(); a; a = a.next_attribute())
    if (index-- == 0)
      return a.value();
  return std::string();
}

std::size_t HXMLWElement::getChildCount() const {
  std::size_t count = 0;
  if (m_node)
    for (pugi::xml_node c = node(m_node).first_child(); c; c = c.next_sibling())
      if (isElement(c))
        ++count;
  return count;
}

HXMLWElement HXMLWElement::getChild(std::size_t index) const {
  if (m_node)
    for (pugi::xml_node c = node(m_node).first_child(); c; c = c.next_sibling())
      if (isElement(c) && index-- == 0)
        return HXMLWElement(c.internal_object(), m_doc);
  return HXMLWElement();
}

std::vector<HXMLWElement> HXMLWElement::getChildren() const {
  std::vector<HXMLWElement> out;
  if (m_node)
    for (pugi::xml_node c = node(m_node).first_child(); c; c = c.next_sibling())
      if (isElement(c))
        out.emplace_back(c.internal_object(), m_doc);
  return out;
}

HXMLWElement HXMLWElement::findChild(const std::string &tag) const {
  if (m_node)
    for (pugi::xml_node c = node(m_node).first_child(); c; c = c.next_sibling())
      if (isElement(c) && strcasecmp(c.name(), tag.c_str()) == 0)
        return HXMLWElement(c.internal_object(), m_doc);
  return HXMLWElement();
}

int HXMLWElement::getLine() const {
  if (!m_node || !m_doc)
    return 0;
  std::ptrdiff_t offset = node(m_node).offset_debug();
  return offset < 0 ? 0 : m_doc->lineOfOffset(offset);
}

pugi::xml_attribute_struct *HXMLWElement::attrBegin_() const {
  return m_node ? node(m_node).first_attribute().internal_object() : nullptr;
}

pugi::xml_attribute_struct *HXMLWElement::attrNext_(pugi::xml_attribute_struct *cursor) {
  return pugi::xml_attribute(cursor).next_attribute().internal_object();
}

const char *HXMLWElement::attrName_(pugi::xml_attribute_struct *cursor) {
  return pugi::xml_attribute(cursor).name();
}

const char *HXMLWElement::attrValue_(pugi::xml_attribute_struct *cursor) {
  return pugi::xml_attribute(cursor).value();
}
