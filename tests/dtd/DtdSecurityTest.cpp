// Hostile documents: a validation reads the DTD it is meant to read and
// nothing else, never reaches the network, and ends an entity bomb at once.
#include "DtdTestSupport.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <chrono>
#include <filesystem>
#include <fstream>

using test::kSchemaDir;
using test::MessageRecorder;
using test::ScratchDir;

namespace {

// A TCP port on the loopback interface that tells whether anyone connected.
class LoopbackListener {
public:
  LoopbackListener() {
    m_fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof(addr);
    if (m_fd < 0 || ::bind(m_fd, reinterpret_cast<sockaddr *>(&addr), len) != 0 ||
        ::listen(m_fd, 4) != 0 ||
        ::getsockname(m_fd, reinterpret_cast<sockaddr *>(&addr), &len) != 0)
      return;
    m_port = ntohs(addr.sin_port);
  }
  ~LoopbackListener() {
    if (m_fd >= 0)
      ::close(m_fd);
  }
  LoopbackListener(const LoopbackListener &) = delete;
  LoopbackListener &operator=(const LoopbackListener &) = delete;

  int port() const { return m_port; }
  std::string url(const std::string &scheme, const std::string &file) const {
    return scheme + "://127.0.0.1:" + std::to_string(m_port) + "/" + file;
  }
  bool wasContacted() const {
    int peer = ::accept(m_fd, nullptr, nullptr);
    if (peer < 0)
      return false;
    ::close(peer);
    return true;
  }

private:
  int m_fd = -1;
  int m_port = 0;
};

// A board whose DOCTYPE, on line 2, is \p doctype; \p body starts on line 5.
std::string boardWith(const std::string &doctype, const std::string &body,
                      const std::string &rootAttrs = "") {
  return test::BoardBuilder().doctype(doctype).rootAttributes(rootAttrs).body(body).boardXml();
}

std::string ourDtd() { return kSchemaDir + "/board.dtd"; }

// The finding that refused something: a "@49-105@" whose text mentions
// every one of \p parts. Null when there is none.
const ComMsgRecord *refusal(const MessageRecorder &msgs, std::initializer_list<std::string> parts) {
  for (const ComMsgRecord &r : msgs.records) {
    if (r.id != "49-105")
      continue;
    bool all = true;
    for (const std::string &part : parts)
      all = all && r.args.at(2).find(part) != std::string::npos;
    if (all)
      return &r;
  }
  return nullptr;
}

bool anyMessageMentions(const MessageRecorder &msgs, const std::string &text) {
  for (const ComMsgRecord &r : msgs.records)
    if (r.line.find(text) != std::string::npos)
      return true;
  return false;
}

} // namespace

TEST(DtdSecurity, ExternalEntitiesAreNotRead) {
  ScratchDir dir;
  // If it were read, its element would be a finding of its own.
  std::string secret = dir.write("secret.xml", "<leaked_marker/>");
  struct Case {
    std::string name;
    std::string target;
  } cases[] = {{"xxe", "/etc/passwd"}, {"leak", secret}, {"near", "secret.xml"}};
  for (const Case &c : cases) {
    std::string file =
        dir.write("board.xml", boardWith("<!DOCTYPE board SYSTEM \"" + ourDtd() + "\" [<!ENTITY " +
                                             c.name + " SYSTEM \"" + c.target + "\">]>",
                                         "  <description>&" + c.name + ";</description>\n"));
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board")) << c.target;
    const ComMsgRecord *refused = refusal(msgs, {"external entity '" + c.name + "'", c.target});
    ASSERT_NE(nullptr, refused) << c.target;
    EXPECT_EQ(file, refused->args.at(0));
    EXPECT_EQ("5", refused->args.at(1));
    EXPECT_FALSE(anyMessageMentions(msgs, "root:"));
    EXPECT_FALSE(anyMessageMentions(msgs, "leaked_marker"));
  }
}

TEST(DtdSecurity, NothingIsFetchedFromTheNetwork) {
  LoopbackListener listener;
  ASSERT_NE(0, listener.port());
  ScratchDir dir;
  for (const char *scheme : {"http", "https", "ftp"}) {
    // A DOCTYPE of the file's own at a URL.
    std::string url = listener.url(scheme, "board.dtd");
    std::string file =
        dir.write("board.xml", boardWith("<!DOCTYPE board SYSTEM \"" + url + "\">", ""));
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board")) << url;
    const ComMsgRecord *refused = refusal(msgs, {url, "not fetched"});
    ASSERT_NE(nullptr, refused) << url;
    EXPECT_EQ("2", refused->args.at(1));
  }
  {
    // An entity at a URL, behind the right DTD.
    std::string url = listener.url("http", "entity.txt");
    std::string file =
        dir.write("entity.xml", boardWith("<!DOCTYPE board SYSTEM \"" + ourDtd() +
                                              "\" [<!ENTITY remote SYSTEM \"" + url + "\">]>",
                                          "  <description>&remote;</description>\n"));
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board"));
    EXPECT_NE(nullptr, refusal(msgs, {"external entity 'remote'", url}));
  }
  EXPECT_FALSE(listener.wasContacted());
}

TEST(DtdSecurity, ParameterEntitiesAreNotRead) {
  LoopbackListener listener;
  ScratchDir dir;
  // Read, it would declare the attribute that the root element carries.
  std::string local = dir.write("extra.dtd", "<!ATTLIST board extra CDATA #IMPLIED>\n");
  for (const std::string &target : {local, listener.url("http", "extra.dtd")}) {
    std::string file =
        dir.write("board.xml", boardWith("<!DOCTYPE board SYSTEM \"" + ourDtd() +
                                             "\" [<!ENTITY % pe SYSTEM \"" + target + "\"> %pe;]>",
                                         "", " extra=\"1\""));
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board")) << target;
    const ComMsgRecord *refused = refusal(msgs, {"parameter entity 'pe'", target});
    ASSERT_NE(nullptr, refused) << target;
    EXPECT_EQ("2", refused->args.at(1));
    EXPECT_NE(nullptr, refusal(msgs, {"extra"})) << "the parameter entity was read: " << target;
  }
  EXPECT_FALSE(listener.wasContacted());
}

// The declarations of a billion laughs: lol9 expands to 10^9 times "lol".
std::string entityBomb() {
  std::string decls = "<!ENTITY lol0 \"lol\">";
  for (int i = 1; i <= 9; ++i) {
    std::string prev = "&lol" + std::to_string(i - 1) + ";";
    std::string value;
    for (int k = 0; k < 10; ++k)
      value += prev;
    decls += "<!ENTITY lol" + std::to_string(i) + " \"" + value + "\">";
  }
  return decls;
}

TEST(DtdSecurity, AnEntityBombEndsAtOnce) {
  ScratchDir dir;
  std::string file = dir.write(
      "bomb.xml", boardWith("<!DOCTYPE board SYSTEM \"" + ourDtd() + "\" [" + entityBomb() + "]>",
                            "  <description>&lol9;</description>\n"));
  MessageRecorder msgs;
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board"));
  auto took = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - start);
  EXPECT_LT(took.count(), 250);
  // Refused at its first declaration, before anything is expanded.
  const ComMsgRecord *refused = refusal(msgs, {"entity 'lol0'"});
  ASSERT_NE(nullptr, refused);
  EXPECT_EQ("2", refused->args.at(1));
  EXPECT_EQ(1u, test::findingCount(msgs));

  // The same with parameter entities, which expand inside the DOCTYPE.
  std::string decls = "<!ENTITY % p0 \"<!-- -->\">";
  for (int i = 1; i <= 9; ++i) {
    std::string value;
    for (int k = 0; k < 10; ++k)
      value += "&#37;p" + std::to_string(i - 1) + ";";
    decls += "<!ENTITY % p" + std::to_string(i) + " \"" + value + "\">";
  }
  file =
      dir.write("pebomb.xml",
                boardWith("<!DOCTYPE board SYSTEM \"" + ourDtd() + "\" [" + decls + "%p9;]>", ""));
  msgs.records.clear();
  start = std::chrono::steady_clock::now();
  EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board"));
  took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start);
  EXPECT_LT(took.count(), 250);
  EXPECT_NE(nullptr, refusal(msgs, {"parameter entity 'p0'"}));
}

TEST(DtdSecurity, ExpansionsAreLimitedEvenForOurOwnDtds) {
  // Entities of a DTD in the schema directory are trusted, and still limited.
  ScratchDir dir;
  dir.write("schemas/board.dtd", entityBomb() + "<!ELEMENT board (#PCDATA)>\n"
                                                "<!ATTLIST board schema_version CDATA #IMPLIED>\n");
  std::string file = dir.write("board.xml", "<board schema_version=\"2.1\">\n&lol9;\n</board>\n");
  MessageRecorder msgs;
  HBOBoard board;
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(HBOBoardParser().parseFile(file, &board, true, dir.path() + "/schemas", nullptr));
  // Each expansion is cheap, but a sanitizer build makes it less so.
  auto took =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start);
  EXPECT_LT(took.count(), 30);
  ASSERT_EQ(1u, msgs.count("49-106"));
  EXPECT_EQ("2", msgs.find("49-106")->args.at(1));
}

TEST(DtdSecurity, OnlyADtdInsideTheSchemaDirectoryIsRead) {
  ScratchDir dir;
  // A copy of our DTD that, read, would also accept the attribute "extra".
  std::filesystem::copy_file(ourDtd(), dir.path() + "/board.dtd");
  {
    std::ofstream(dir.path() + "/board.dtd", std::ios::app)
        << "<!ATTLIST board extra CDATA #IMPLIED>\n";
  }
  const std::string outside[] = {dir.path() + "/board.dtd",
                                 kSchemaDir + "/../../../../../../../../etc/passwd",
                                 kSchemaDir + "/../current/../board.dtd"};
  for (const std::string &dtd : outside) {
    std::string file = dir.write(
        "board.xml", boardWith("<!DOCTYPE board SYSTEM \"" + dtd + "\">", "", " extra=\"1\""));
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board")) << dtd;
    EXPECT_NE(nullptr, refusal(msgs, {"the DTD '" + dtd + "'"})) << dtd;
    EXPECT_FALSE(anyMessageMentions(msgs, "root:"));
  }
  {
    // A relative DOCTYPE is taken from the file's directory, and inside the
    // schema directory it is read.
    std::string relative = std::filesystem::relative(ourDtd(), dir.path()).string();
    std::string file =
        dir.write("board.xml", boardWith("<!DOCTYPE board SYSTEM \"" + relative + "\">", ""));
    MessageRecorder msgs;
    EXPECT_TRUE(HBOBoardParser().isValidXML(file, "board")) << relative;
    EXPECT_EQ(0u, test::findingCount(msgs));
  }
}
