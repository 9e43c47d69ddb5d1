// An entity resolver for callers outside this library that validate with a
// DTD of their choice: every request gets that one file, so a document can
// make the parser read nothing else.
#ifndef BOARDLIB_HBORESOLVER_H
#define BOARDLIB_HBORESOLVER_H

#include <xercesc/sax/EntityResolver.hpp>

#include <string>

class HBOResolver : public xercesc::EntityResolver {
public:
  /// \p path is the DTD file handed out for every request.
  explicit HBOResolver(const std::string &path);

  /// Returns a new input source over the stored DTD, whatever was asked
  /// for; the parser owns it.
  xercesc::InputSource *resolveEntity(const XMLCh *const publicId,
                                      const XMLCh *const systemId) override;

  const std::string &getPath() const { return m_path; }
  /// Whether the parser has asked for an entity yet.
  bool isUsed() const { return m_used; }

private:
  std::string m_path;
  bool m_used = false;
};

#endif
