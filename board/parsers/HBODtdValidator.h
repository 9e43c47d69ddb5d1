// DTD validation of the checking path: a file is held to the DTD of its kind
// even when it names none.
#ifndef BOARDLIB_HBODTDVALIDATOR_H
#define BOARDLIB_HBODTDVALIDATOR_H

#include <string>

class HBOParseContext;

class HBODtdValidator {
public:
  explicit HBODtdValidator(HBOParseContext &ctx) : m_ctx(ctx) {}

  /// Holds \p fileName to the DTD of \p type ("board", "part0_pins",
  /// "preset"); the findings are sent at once. \p readable, when given,
  /// tells whether the readers can still read the file: false when it could
  /// not be read or is no well-formed XML.
  bool isValidXML(const std::string &fileName, const std::string &type, bool *readable = nullptr);
  /// The DOCTYPE that names the DTD of \p type, or empty when there is none.
  std::string createDoctypeString(const std::string &type);

private:
  /// The file's text (decoded when packed, in UTF-8 with \p converted when
  /// it was not), with our DOCTYPE put before its root element when it
  /// has none of its own, and the I/O bank attributes of its pins declared
  /// in whichever DOCTYPE it has (\p declared); false when ours cannot be
  /// made.
  bool readWithDoctype_(const std::string &fileName, const std::string &type, std::string &buffer,
                        std::string &ourDoctype, bool &hasDoctype, bool &hasRoot, bool &converted,
                        bool &declared);

  HBOParseContext &m_ctx;
};

#endif
