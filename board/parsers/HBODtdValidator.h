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
  /// "preset"); the findings are sent at once.
  bool isValidXML(const std::string &fileName, const std::string &type);
  /// The DOCTYPE that names the DTD of \p type, or empty when there is none.
  std::string createDoctypeString(const std::string &type);

private:
  /// The file's text, with our DOCTYPE put before its root element when it
  /// has none of its own, and the I/O bank attributes of its pins declared
  /// in whichever DOCTYPE it has; false when ours cannot be made.
  bool readWithDoctype_(const std::string &fileName, const std::string &type, std::string &buffer,
                        std::string &ourDoctype, bool &hasDoctype, bool &hasRoot);

  HBOParseContext &m_ctx;
};

#endif
