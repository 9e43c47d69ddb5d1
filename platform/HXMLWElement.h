// One element of an XML document read by HXMLWInterface. A small handle:
// copying it is cheap, and it stays valid as long as its document.
#ifndef BOARDLIB_PLATFORM_HXMLWELEMENT_H
#define BOARDLIB_PLATFORM_HXMLWELEMENT_H

#include <cstddef>
#include <string>
#include <vector>

namespace pugi {
struct xml_node_struct;
struct xml_attribute_struct;
} // namespace pugi
class HXMLWInterface;

class HXMLWElement {
public:
  HXMLWElement() = default;
  HXMLWElement(pugi::xml_node_struct *node, const HXMLWInterface *doc) : m_node(node), m_doc(doc) {}

  bool isNull() const { return m_node == nullptr; }
  explicit operator bool() const { return m_node != nullptr; }

  /// The tag name as written.
  std::string getTag() const;
  /// Whether the tag equals \p tag ignoring case (ASCII), without copying it.
  bool isTag(const char *tag) const;
  /// Whether the tag equals \p tag exactly.
  bool isTagExactly(const char *tag) const;
  /// The element's own text: its text and CDATA children, joined.
  std::string getText() const;

  /// The attribute's value; an absent attribute gives the empty string.
  std::string getAttribute(const std::string &name) const;
  /// False, with \p out untouched, when the attribute is absent.
  bool getAttribute(const std::string &name, std::string &out) const;
  bool hasAttribute(const std::string &name) const;
  std::size_t getAttributeCount() const;
  /// Name and value of the attribute at \p index in document order; empty
  /// when out of range.
  std::string getAttributeName(std::size_t index) const;
  std::string getAttributeValue(std::size_t index) const;
  /// Calls \p visit with the name and value of each attribute in document
  /// order; the cheap way to look at every attribute.
  template <typename Visitor> void forEachAttribute(Visitor &&visit) const {
    for (pugi::xml_attribute_struct *it = attrBegin_(); it; it = attrNext_(it))
      visit(attrName_(it), attrValue_(it));
  }

  /// Child elements only: text, comments and processing instructions are
  /// not children.
  std::size_t getChildCount() const;
  HXMLWElement getChild(std::size_t index) const;
  std::vector<HXMLWElement> getChildren() const;
  /// The first child element whose tag equals \p tag ignoring case.
  HXMLWElement findChild(const std::string &tag) const;

  /// The 1-based line of the element's start tag, or 0 when unknown.
  int getLine() const;
  /// The document the element belongs to.
  const HXMLWInterface *getDocument() const { return m_doc; }

  bool operator==(const HXMLWElement &o) const { return m_node == o.m_node; }
  bool operator!=(const HXMLWElement &o) const { return m_node != o.m_node; }

private:
  // Attribute walking without exposing the XML library's classes: the
  // cursor is its opaque attribute record.
  pugi::xml_attribute_struct *attrBegin_() const;
  static pugi::xml_attribute_struct *attrNext_(pugi::xml_attribute_struct *cursor);
  static const char *attrName_(pugi::xml_attribute_struct *cursor);
  static const char *attrValue_(pugi::xml_attribute_struct *cursor);

  pugi::xml_node_struct *m_node = nullptr;
  const HXMLWInterface *m_doc = nullptr;
};

#endif
