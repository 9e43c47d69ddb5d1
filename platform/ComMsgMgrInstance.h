// A prepared message: category, severity and key with its arguments, ready to
// be stored, copied and sent later.
#ifndef BOARDLIB_PLATFORM_COMMSGMGRINSTANCE_H
#define BOARDLIB_PLATFORM_COMMSGMGRINSTANCE_H

#include <string>
#include <vector>

namespace ComMsg {
/// Severity masks; the values are part of the message manager's contract.
enum MsgMask : unsigned {
  Info = 0x4000000,
  Warning = 0x8000000,
  CriticalWarning = 0x10000000,
  Error = 0x20000000,
};

/// What a finding of a check does to the file it was found in, whatever its
/// severity: an error leaves the file unusable, a warning only advises.
/// Messages that are no findings are unrated.
enum Impact : unsigned { Unrated = 0, Advisory = 1, Blocking = 2 };
} // namespace ComMsg

class ComMsgMgrInstance {
public:
  ComMsgMgrInstance() = default;
  /// \p key has the form "@49-56@%s%s": id between the at-signs, then one
  /// printf-style placeholder per argument (%s or %d).
  ComMsgMgrInstance(std::string category, unsigned severity, std::string key);

  /// Appends arguments in placeholder order. Numbers are kept as their
  /// decimal text, which is what a %d placeholder prints.
  ComMsgMgrInstance &arg(const std::string &value);
  ComMsgMgrInstance &arg(const char *value);
  ComMsgMgrInstance &arg(long long value);
  ComMsgMgrInstance &arg(int value) { return arg(static_cast<long long>(value)); }
  ComMsgMgrInstance &arg(unsigned value) { return arg(static_cast<long long>(value)); }

  const std::string &getCategory() const { return m_category; }
  unsigned getSeverity() const { return m_severity; }
  const std::string &getKey() const { return m_key; }
  const std::vector<std::string> &getArgs() const { return m_args; }

  /// The file a finding lies in and its 1-based line, 0 when the line is not
  /// known. Empty for messages that come from no place in a file.
  void setPlace(const std::string &file, unsigned long line) {
    m_placeFile = file;
    m_placeLine = line;
  }
  const std::string &getPlaceFile() const { return m_placeFile; }
  unsigned long getPlaceLine() const { return m_placeLine; }
  void setImpact(ComMsg::Impact impact) { m_impact = impact; }
  ComMsg::Impact getImpact() const { return m_impact; }

  /// The id inside the key, such as "49-56"; empty for a key without one.
  std::string getId() const;
  /// The message's text from the catalog with the arguments filled in.
  std::string getText() const;
  /// The full printed line, such as "WARNING: [Board 49-36] text".
  std::string format() const;

private:
  std::string m_category;
  unsigned m_severity = ComMsg::Info;
  std::string m_key;
  std::vector<std::string> m_args;
  std::string m_placeFile;
  unsigned long m_placeLine = 0;
  ComMsg::Impact m_impact = ComMsg::Unrated;
};

#endif
