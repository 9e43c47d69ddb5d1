// One element of an XML document read by HXMLWInterface. A small handle:
// copying it is cheap, and it stays valid as long as its document.
#ifndef BOARDLIB_PLATFORM_HXMLWELEMENT_H
#define BOARDLIB_PLATFORM_HXMLWELEMENT_H

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
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
  /// The same without a copy; valid as long as the document.
  std::string_view getTagView() const;
  /// Whether the tag equals \p tag ignoring case (ASCII), without copying it.
  bool isTag(const char *tag) const;
  /// Whether the tag equals \p tag exactly.
  bool isTagExactly(const char *tag) const;
  /// The element's own text: its text and CDATA children, joined.
  std::string getText() const;

  /// The attribute's value; an absent attribute gives the empty string.
  std::string getAttribute(const std::string &name) const;
  std::string getAttribute(const char *name) const;
  /// False, with \p out untouched, when the attribute is absent.
  bool getAttribute(const std::string &name, std::string &out) const;
  bool getAttribute(const char *name, std::string &out) const;
  bool hasAttribute(const std::string &name) const;
  bool hasAttribute(const char *name) const;

  // Attribute values without copies. What they return points into the
  // document and is valid as long as the document is; names are matched
  // exactly, as above.

  /// The attribute's value, or null when it is absent.
  const char *findAttribute(const char *name) const;
  /// The attribute's value; empty when it is absent.
  std::string_view getAttributeView(const char *name) const;
  /// False, with \p out untouched, when the attribute is absent.
  bool getAttributeView(const char *name, std::string_view &out) const;
  /// Looks \p count attributes up in one walk of the element's attributes:
  /// values[i] becomes the value of the attribute named names[i], matched
  /// exactly, or null when it is absent. Cheaper than one findAttribute
  /// each when a reader wants several attributes of the same element,
  /// absent ones above all.
  void findAttributes(const char *const *names, std::size_t count, const char **values) const;
  template <std::size_t N>
  void findAttributes(const char *const (&names)[N], const char *(&values)[N]) const {
    findAttributes(names, N, values);
  }
  /// A value from findAttributes as a view: empty when it is absent.
  static std::string_view viewOf(const char *value) {
    return value ? std::string_view(value) : std::string_view();
  }
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
  HXMLWElement findChild(const char *tag) const;

  class ChildRange;
  /// The child elements in document order, walked in place:
  ///   for (HXMLWElement child : element.children()) ...
  /// With \p tag, only those whose tag equals it ignoring case; the text
  /// must outlive the range.
  ChildRange children() const;
  ChildRange children(const char *tag) const;

  /// The 1-based line of the element's start tag, or 0 when unknown.
  int getLine() const;
  /// The document the element belongs to.
  const HXMLWInterface *getDocument() const { return m_doc; }

  bool operator==(const HXMLWElement &o) const { return m_node == o.m_node; }
  bool operator!=(const HXMLWElement &o) const { return m_node != o.m_node; }

private:
  // The first child element at or after \p from (itself included) whose
  // tag equals \p tag ignoring case, any tag when null.
  static pugi::xml_node_struct *elementFrom_(pugi::xml_node_struct *from, const char *tag);
  static pugi::xml_node_struct *firstChild_(pugi::xml_node_struct *node);
  static pugi::xml_node_struct *nextSibling_(pugi::xml_node_struct *node);

  // Attribute walking without exposing the XML library's classes: the
  // cursor is its opaque attribute record.
  pugi::xml_attribute_struct *attrBegin_() const;
  static pugi::xml_attribute_struct *attrNext_(pugi::xml_attribute_struct *cursor);
  static const char *attrName_(pugi::xml_attribute_struct *cursor);
  static const char *attrValue_(pugi::xml_attribute_struct *cursor);

  pugi::xml_node_struct *m_node = nullptr;
  const HXMLWInterface *m_doc = nullptr;
};

class HXMLWElement::ChildRange {
public:
  class iterator {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = HXMLWElement;
    using difference_type = std::ptrdiff_t;
    using pointer = const HXMLWElement *;
    using reference = HXMLWElement;

    iterator() = default;
    HXMLWElement operator*() const { return HXMLWElement(m_node, m_doc); }
    iterator &operator++() {
      m_node = elementFrom_(nextSibling_(m_node), m_tag);
      return *this;
    }
    iterator operator++(int) {
      iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const iterator &o) const { return m_node == o.m_node; }
    bool operator!=(const iterator &o) const { return m_node != o.m_node; }

  private:
    friend class ChildRange;
    iterator(pugi::xml_node_struct *node, const HXMLWInterface *doc, const char *tag)
        : m_node(node), m_doc(doc), m_tag(tag) {}
    pugi::xml_node_struct *m_node = nullptr;
    const HXMLWInterface *m_doc = nullptr;
    const char *m_tag = nullptr;
  };

  iterator begin() const {
    return iterator(m_parent ? elementFrom_(firstChild_(m_parent), m_tag) : nullptr, m_doc, m_tag);
  }
  iterator end() const { return iterator(); }
  bool empty() const { return begin() == end(); }

private:
  friend class HXMLWElement;
  ChildRange(pugi::xml_node_struct *parent, const HXMLWInterface *doc, const char *tag)
      : m_parent(parent), m_doc(doc), m_tag(tag) {}
  pugi::xml_node_struct *m_parent;
  const HXMLWInterface *m_doc;
  const char *m_tag;
};

inline HXMLWElement::ChildRange HXMLWElement::children() const {
  return ChildRange(m_node, m_doc, nullptr);
}

inline HXMLWElement::ChildRange HXMLWElement::children(const char *tag) const {
  return ChildRange(m_node, m_doc, tag);
}

#endif
