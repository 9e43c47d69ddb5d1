#include "HXMLWElement.h"
#include "HXMLWInterface.h"

#include <algorithm>
#include <cstring>
#include <pugixml.hpp>
#include <strings.h>

namespace {

inline pugi::xml_node node(pugi::xml_node_struct *n) { return pugi::xml_node(n); }

inline bool isElement(const pugi::xml_node &n) { return n.type() == pugi::node_element; }

} // namespace

std::string HXMLWElement::getTag() const { return m_node ? node(m_node).name() : ""; }

std::string_view HXMLWElement::getTagView() const {
  return m_node ? std::string_view(node(m_node).name()) : std::string_view();
}

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
  return getAttribute(name.c_str());
}

bool HXMLWElement::getAttribute(const std::string &name, std::string &out) const {
  return getAttribute(name.c_str(), out);
}

bool HXMLWElement::hasAttribute(const std::string &name) const {
  return findAttribute(name.c_str()) != nullptr;
}

std::string HXMLWElement::getAttribute(const char *name) const {
  const char *value = findAttribute(name);
  return value ? std::string(value) : std::string();
}

bool HXMLWElement::getAttribute(const char *name, std::string &out) const {
  const char *value = findAttribute(name);
  if (!value)
    return false;
  out = value;
  return true;
}

bool HXMLWElement::hasAttribute(const char *name) const { return findAttribute(name) != nullptr; }

const char *HXMLWElement::findAttribute(const char *name) const {
  if (!m_node || !name)
    return nullptr;
  // Readers ask for several attributes of every element; most names differ
  // in their first letter, which spares the call for those.
  const char first = name[0];
  for (pugi::xml_attribute a = node(m_node).first_attribute(); a; a = a.next_attribute()) {
    const char *attr = a.name();
    if (attr[0] == first && std::strcmp(attr, name) == 0)
      return a.value();
  }
  return nullptr;
}

void HXMLWElement::findAttributes(const char *const *names, std::size_t count,
                                  const char **values) const {
  std::fill(values, values + count, nullptr);
  if (!m_node)
    return;
  std::size_t missing = count;
  for (pugi::xml_attribute a = node(m_node).first_attribute(); a && missing;
       a = a.next_attribute()) {
    const char *attr = a.name();
    for (std::size_t i = 0; i < count; ++i) {
      // The first attribute of a name is the one findAttribute gives.
      if (values[i] || !names[i] || attr[0] != names[i][0] || std::strcmp(attr, names[i]) != 0)
        continue;
      values[i] = a.value();
      --missing;
    }
  }
}

std::string_view HXMLWElement::getAttributeView(const char *name) const {
  const char *value = findAttribute(name);
  return value ? std::string_view(value) : std::string_view();
}

bool HXMLWElement::getAttributeView(const char *name, std::string_view &out) const {
  const char *value = findAttribute(name);
  if (!value)
    return false;
  out = value;
  return true;
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
  for (HXMLWElement child : children())
    out.push_back(child);
  return out;
}

HXMLWElement HXMLWElement::findChild(const std::string &tag) const {
  return findChild(tag.c_str());
}

HXMLWElement HXMLWElement::findChild(const char *tag) const {
  pugi::xml_node_struct *c = m_node ? elementFrom_(firstChild_(m_node), tag) : nullptr;
  return c ? HXMLWElement(c, m_doc) : HXMLWElement();
}

pugi::xml_node_struct *HXMLWElement::elementFrom_(pugi::xml_node_struct *from, const char *tag) {
  for (pugi::xml_node c(from); c; c = c.next_sibling())
    if (isElement(c) && (!tag || strcasecmp(c.name(), tag) == 0))
      return c.internal_object();
  return nullptr;
}

pugi::xml_node_struct *HXMLWElement::firstChild_(pugi::xml_node_struct *n) {
  return node(n).first_child().internal_object();
}

pugi::xml_node_struct *HXMLWElement::nextSibling_(pugi::xml_node_struct *n) {
  return node(n).next_sibling().internal_object();
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
