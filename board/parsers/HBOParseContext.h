// What the section readers of one read of a board file share: the board read
// into, the message queue that decides the result at the end, the flags of
// the read, and the records that checks of later sections consult.
#ifndef BOARDLIB_HBOPARSECONTEXT_H
#define BOARDLIB_HBOPARSECONTEXT_H

#include "ComMsgMgrInstance.h"
#include "HBOBoardComponent.h"
#include "HXMLWElement.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

class HBOBoard;

/// What a file says of one board interface, for callers that want to know
/// what a file uses without looking at the board.
struct HBOParsedInterface {
  std::unordered_set<std::string> logicalPorts;
  std::string type;
};

struct HBOParsedVLNVs {
  std::vector<HBOParsedInterface> interfaces;
  std::unordered_set<std::string> preferredIpVlnvs;
};

using HBODesignConstr = HBOBoardComponent::DesignConstr;
/// Queued messages in order; the flag is true for a message only told.
using HBOMessageQueue = std::vector<std::pair<ComMsgMgrInstance, bool>>;

class HBOParseContext {
public:
  /// Back to the state before a read, keeping the board and the strict flag,
  /// which the caller sets.
  void reset(bool validate, const std::string &schemaDir, HBOParsedVLNVs *parsed);

  /// Puts a message on the queue: with \p tellOnly false it fails the read.
  template <typename... Args>
  void queueMsg(bool tellOnly, unsigned severity, const std::string &key, const Args &...args) {
    queueMsgAt(HXMLWElement(), tellOnly, severity, key, args...);
  }
  /// The same for a finding about element \p at, whose place a check tells.
  template <typename... Args>
  void queueMsgAt(const HXMLWElement &at, bool tellOnly, unsigned severity, const std::string &key,
                  const Args &...args) {
    ComMsgMgrInstance msg("board", severity, key);
    (msg.arg(args), ...);
    place(msg, at, tellOnly);
    messages.emplace_back(std::move(msg), tellOnly);
  }
  /// The frequent finding "@49-69@%s%s": the board file and a composed text.
  void queueFinding(const std::string &text, bool tellOnly = false);
  void queueFinding(const std::string &file, const std::string &text, bool tellOnly);
  void queueFinding(const HXMLWElement &at, const std::string &text, bool tellOnly = false);
  void queueFinding(const HXMLWElement &at, const std::string &file, const std::string &text,
                    bool tellOnly);
  /// For a check, marks \p msg as a finding: its impact, and the file and
  /// line of \p at (or of the board file, without a line, when \p at is
  /// null). A read tells no places, and so never looks for a line.
  void place(ComMsgMgrInstance &msg, const HXMLWElement &at, bool tellOnly) const;
  /// While alive, findings queued without an element of their own take
  /// the place of \p element: the checks that a reader runs on what it has
  /// just read tell where that stands in the file.
  class SubjectScope {
  public:
    SubjectScope(HBOParseContext &ctx, const HXMLWElement &element)
        : m_ctx(ctx), m_saved(ctx.subject) {
      ctx.subject = element;
    }
    ~SubjectScope() { m_ctx.subject = m_saved; }
    SubjectScope(const SubjectScope &) = delete;
    SubjectScope &operator=(const SubjectScope &) = delete;

  private:
    HBOParseContext &m_ctx;
    HXMLWElement m_saved;
  };

  /// The pin file of \p component, named at \p namedAt, was not read.
  void markPinsUnread(const HBOBoardComponent *component, const HXMLWElement &namedAt);
  /// A pin that an interface of \p component uses cannot be looked for:
  /// the component's pin file was not read. Counted, and told once per
  /// component by queueUncheckedPins.
  void countUncheckedPin(const HBOBoardComponent *component);
  /// Fails the read with one finding per component whose pins could not be
  /// looked for, with their number.
  void queueUncheckedPins();
  /// True when no queued message fails the read; with \p send every queued
  /// message is sent, in queue order.
  bool iterateMessages(bool send) const;

  /// A file named by board.xml, taken relative to the folder of board.xml
  /// whatever the working directory.
  std::string resolveBesideBoard_(const std::string &fileName) const;
  /// Whether the file that \p attribute of board.xml names lies inside the
  /// board's folder; if not, says so ("@49-181@", a warning) and the file
  /// must not be read: a board must not make the load read files of the
  /// system.
  bool isInsideBoardDir_(const char *attribute, const std::string &fileName) const;

  // The number conversions of every section: strict checks hold numbers to
  // their form, older schemas keep their old leniency.
  static bool isNonNegativeInteger(const std::string &value);
  int convert2NonNegativeInteger(const std::string &value, const std::string &what) const;
  int convert2NonNegativeInteger(const char *value, const std::string &what) const;
  /// An int read as the stream conversions read it: leading blanks, a sign,
  /// and the digits up to the first other character. Text with no number,
  /// or a number that an int cannot hold, raises the finding "@49-69@%s%s"
  /// naming \p what and the value.
  int convertInteger(std::string_view value, const std::string &what) const;
  /// The reading of convertInteger without the raise: sets \p out and gives
  /// an empty text, or gives the text of the finding.
  static std::string readInteger(std::string_view value, const std::string &what, int &out);
  /// The text of the finding of a number outside [\p lowest, \p highest],
  /// naming the attribute \p what and the value.
  static std::string outOfRangeText(const std::string &what, std::string_view value,
                                    long long lowest, long long highest);
  /// A whole decimal float, as the stream conversions read it: an optional
  /// sign, digits with a point and an exponent, or inf, infinity, nan and
  /// nan(...) in any case; no spaces around it, and nothing that overflows.
  /// False, with \p out untouched, for anything else.
  static bool parseFloat(std::string_view text, float &out);
  /// A whole decimal int with an optional sign and no spaces; false, with
  /// \p out untouched, for anything else and for what does not fit.
  static bool parseInt(std::string_view text, int &out);
  /// Whether \p a equals \p b ignoring ASCII case.
  static bool sameIgnoringCase(std::string_view a, std::string_view b);

  HBOBoard *board = nullptr;
  /// Every queued message is sent at the end of the read.
  bool sendMessages = false;
  /// Files are held to their DTDs.
  bool validate = false;
  bool strictChecks = false;
  /// Pin properties the board does not carry.
  std::unordered_set<std::string> portPropsToSkip;
  /// The caller's collector of what the file uses, or null.
  HBOParsedVLNVs *parsed = nullptr;
  /// Names of the interfaces read so far, for the checks of component modes.
  std::unordered_set<std::string> interfaceNames;
  /// Per of_component, "component:interface:port" of every port read so far.
  std::map<std::string, std::unordered_set<std::string>> portRecords;
  /// Where the DTDs are; empty for those of an installation.
  std::string schemaDir;
  /// The element being read, for SubjectScope.
  HXMLWElement subject;
  /// The root element of the board file while it is read, where the checks
  /// that run on the objects read look for the place of a finding.
  HXMLWElement boardRoot;
  /// For a check, the first element under \p within (the board file's root
  /// when null) with tag \p tag and attribute name \p name, tags in any
  /// case; a null element in a read, or when there is none.
  HXMLWElement findNamed(const char *tag, const std::string &name,
                         const HXMLWElement &within = HXMLWElement()) const;
  /// Some file failed its DTD; the readers still read what they can, so
  /// that a check tells every finding in one run.
  bool dtdFailed = false;
  /// Components whose pin file was not read.
  std::unordered_set<const HBOBoardComponent *> pinsUnread;
  /// Per component of pinsUnread, in the order they were read: its name,
  /// its pin file, how many pins its interfaces use, and the place of the
  /// finding that tells them.
  struct UncheckedPins {
    const HBOBoardComponent *component;
    std::string name;
    std::string pinFile;
    unsigned count;
    ComMsgMgrInstance place;
  };
  std::vector<UncheckedPins> uncheckedPins;
  HBOMessageQueue messages;

private:
  /// Raises "@49-69@%s%s" with \p text, placed for a check.
  [[noreturn]] void raiseFinding_(const std::string &text) const;
  [[noreturn]] void raiseNotValid_(std::string_view value, const std::string &what) const;
  [[noreturn]] void raiseOutOfRange_(std::string_view value, const std::string &what,
                                     long long lowest) const;
};

#endif
