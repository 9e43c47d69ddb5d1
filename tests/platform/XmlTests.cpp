#include "HXMLWInterface.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

TEST(Xml, AttributesByNameAndIndex) {
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromBuffer("<board vendor=\"acme\" name='b&amp;c' empty=\"\"/>", "mem"));
  HXMLWElement *root = doc.getRootElement();
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->getTag(), "board");
  EXPECT_EQ(root->getAttribute("name"), "b&c");
  EXPECT_EQ(root->getAttribute("absent"), "");
  EXPECT_TRUE(root->hasAttribute("empty"));
  EXPECT_FALSE(root->hasAttribute("Vendor")); // attribute names keep their case

  std::string out = "untouched";
  EXPECT_FALSE(root->getAttribute("absent", out));
  EXPECT_EQ(out, "untouched");
  EXPECT_TRUE(root->getAttribute("empty", out));
  EXPECT_EQ(out, "");

  ASSERT_EQ(root->getAttributeCount(), 3u);
  EXPECT_EQ(root->getAttributeName(0), "vendor");
  EXPECT_EQ(root->getAttributeValue(1), "b&c");
  EXPECT_EQ(root->getAttributeName(3), "");
  EXPECT_EQ(root->getAttributeValue(99), "");
}

TEST(Xml, ChildrenAreElementsOnly) {
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromBuffer(
      "<r>lead<!-- note --><a/>mid<?pi data?><b x='1'/><![CDATA[<c/>]]>tail</r>"));
  HXMLWElement *root = doc.getRootElement();
  ASSERT_NE(root, nullptr);
  ASSERT_EQ(root->getChildCount(), 2u);
  EXPECT_EQ(root->getChild(0).getTag(), "a");
  EXPECT_EQ(root->getChild(1).getAttribute("x"), "1");
  EXPECT_TRUE(root->getChild(2).isNull());
  std::vector<HXMLWElement> children = root->getChildren();
  ASSERT_EQ(children.size(), 2u);
  EXPECT_EQ(children[1], root->getChild(1));
  EXPECT_EQ(root->getText(), "leadmid<c/>tail");
  EXPECT_EQ(children[0].getDocument(), &doc);
}

TEST(Xml, FindChildIgnoresCaseAndNullHandlesChainSafely) {
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromBuffer(
      "<board><Compatible_Board_Revisions/><components><component/></components></board>"));
  HXMLWElement *root = doc.getRootElement();
  EXPECT_EQ(root->findChild("compatible_board_revisions").getTag(), "Compatible_Board_Revisions");
  EXPECT_EQ(root->findChild("COMPONENTS").findChild("Component").getTag(), "component");

  HXMLWElement missing = root->findChild("jumpers");
  EXPECT_TRUE(missing.isNull());
  EXPECT_FALSE(missing);
  EXPECT_TRUE(missing.findChild("x").isNull());
  EXPECT_EQ(missing.getTag(), "");
  EXPECT_EQ(missing.getAttribute("a"), "");
  EXPECT_EQ(missing.getChildCount(), 0u);
  EXPECT_EQ(missing.getLine(), 0);
}

TEST(Xml, LineNumbersOfElements) {
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromBuffer("<?xml version=\"1.0\"?>\r\n"
                                 "<board>\r\n"
                                 "  <!-- a\r\n comment -->\r\n"
                                 "  <a/>\r\n"
                                 "\r\n"
                                 "  <b\r\n      attr='1'/>\r\n"
                                 "</board>\r\n"));
  HXMLWElement *root = doc.getRootElement();
  EXPECT_EQ(root->getLine(), 2);
  EXPECT_EQ(root->getChild(0).getLine(), 5);
  EXPECT_EQ(root->getChild(1).getLine(), 7);
}

TEST(Xml, SyntaxErrorIsReportedWithItsLine) {
  test::MessageRecorder sink;
  HXMLWInterface doc;
  EXPECT_FALSE(doc.readFromBuffer("<board>\n  <a>\n  </a>\n  <b></c>\n</board>\n", "bad.xml"));
  EXPECT_EQ(doc.getRootElement(), nullptr);
  EXPECT_EQ(doc.getErrorText().rfind("line 4, column ", 0), 0u) << doc.getErrorText();
  ASSERT_EQ(sink.records.size(), 1u);
  const ComMsgRecord &r = sink.records[0];
  EXPECT_EQ(r.key, "@50-1@%s%d%s");
  EXPECT_EQ(r.severity, ComMsg::Error);
  ASSERT_EQ(r.args.size(), 3u);
  EXPECT_EQ(r.args[0], "bad.xml");
  EXPECT_EQ(r.args[1], "4");

  // A failed read after a good one leaves no stale root behind.
  ASSERT_TRUE(doc.readFromBuffer("<ok/>"));
  ASSERT_NE(doc.getRootElement(), nullptr);
  EXPECT_TRUE(doc.getErrorText().empty());
  EXPECT_FALSE(doc.readFromBuffer("<ok>", "", false));
  EXPECT_EQ(doc.getRootElement(), nullptr);
  EXPECT_EQ(sink.records.size(), 1u); // report=false sends nothing
}

TEST(Xml, EmptyBinaryAndMissingFiles) {
  test::MessageRecorder sink;
  test::ScratchDir dir;
  dir.write("empty.xml", "");
  HXMLWInterface doc;
  EXPECT_FALSE(doc.readFromFile(dir.file("empty.xml")));
  EXPECT_EQ(doc.getRootElement(), nullptr);

  std::string noise;
  std::mt19937 rng(7);
  for (int i = 0; i < 4096; ++i)
    noise += static_cast<char>(rng() & 0xFF);
  noise[10] = '\0';
  dir.write("noise.xml", noise);
  EXPECT_FALSE(doc.readFromFile(dir.file("noise.xml")));
  EXPECT_EQ(doc.getRootElement(), nullptr);

  EXPECT_FALSE(doc.readFromFile(dir.file("missing.xml")));
  EXPECT_EQ(doc.getFileName(), dir.file("missing.xml"));
  ASSERT_EQ(sink.records.size(), 3u);
  EXPECT_EQ(sink.records[2].key, "@50-2@%s%s");
  EXPECT_EQ(sink.records[2].args[0], dir.file("missing.xml"));

  EXPECT_FALSE(doc.readFromFile(dir.path())); // a directory is no file to read
  EXPECT_EQ(doc.getRootElement(), nullptr);
  ASSERT_EQ(sink.records.size(), 4u);
  EXPECT_EQ(sink.records[3].key, "@50-2@%s%s");
}

TEST(Xml, OtherEncodingsKeepTheirLineNumbers) {
  // Latin-1 letters take two bytes once converted; lines must not drift.
  std::string pad(400, '\xE9');
  std::string latin1 = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<board d=\"" + pad +
                       "\">\n<a/>\n" + std::string(300, '\n') + "<b/>\n</board>\n";
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromBuffer(latin1));
  HXMLWElement *root = doc.getRootElement();
  EXPECT_EQ(root->getAttribute("d").substr(0, 4), "\xC3\xA9\xC3\xA9");
  EXPECT_EQ(root->getChild(0).getLine(), 3);
  EXPECT_EQ(root->getChild(1).getLine(), 304);

  test::MessageRecorder sink;
  std::string broken = latin1.substr(0, latin1.size() - 9) + "</c>\n";
  EXPECT_FALSE(doc.readFromBuffer(broken, "latin1.xml"));
  ASSERT_EQ(sink.records.size(), 1u);
  EXPECT_EQ(sink.records[0].args[1], "305");

  // UTF-16 with a byte order mark.
  std::string utf16 = "\xFF\xFE";
  for (char c : std::string("<r>\n\n<a v='x'/></r>")) {
    utf16 += c;
    utf16 += '\0';
  }
  ASSERT_TRUE(doc.readFromBuffer(utf16));
  EXPECT_EQ(doc.getRootElement()->getChild(0).getLine(), 3);
  EXPECT_EQ(doc.getRootElement()->getChild(0).getAttribute("v"), "x");
}

TEST(Xml, EntitiesAreNeverExpandedNorFetched) {
  test::ScratchDir dir;
  dir.write("secret.txt", "TOP-SECRET");
  dir.write("evil.dtd", "<!ENTITY leak SYSTEM \"secret.txt\">");
  std::string text = "<?xml version=\"1.0\"?>\n"
                     "<!DOCTYPE board SYSTEM \"evil.dtd\" [\n"
                     "  <!ENTITY inner \"EXPANDED\">\n"
                     "  <!ENTITY outside SYSTEM \"file://" +
                     dir.file("secret.txt") +
                     "\">\n"
                     "]>\n"
                     "<board name=\"&inner;\">&inner;|&outside;|&leak;<a/></board>\n";
  dir.write("board.xml", text);
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromFile(dir.file("board.xml")));
  HXMLWElement *root = doc.getRootElement();
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->getTag(), "board");
  EXPECT_EQ(root->getAttribute("name"), "&inner;");
  EXPECT_EQ(root->getText(), "&inner;|&outside;|&leak;");
  EXPECT_EQ(root->getChildCount(), 1u);
  EXPECT_EQ(root->getLine(), 6);
}

TEST(Xml, DeeplyNestedDocumentParsesWithoutRecursion) {
  const int depth = 100000;
  std::string text;
  text.reserve(depth * 7);
  for (int i = 0; i < depth; ++i)
    text += "<a>";
  for (int i = 0; i < depth; ++i)
    text += "</a>";
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromBuffer(text, "deep.xml"));
  HXMLWElement e = *doc.getRootElement();
  int levels = 1;
  while (e.getChildCount() == 1) {
    e = e.getChild(0);
    ++levels;
  }
  EXPECT_EQ(levels, depth);

  // Unclosed at that depth: an error, not a crash.
  test::MessageRecorder sink;
  EXPECT_FALSE(doc.readFromBuffer(text.substr(0, text.size() - 4), "deep.xml"));
  EXPECT_EQ(sink.records.size(), 1u);
}

TEST(Xml, ViewsAndChildRanges) {
  HXMLWInterface doc;
  ASSERT_TRUE(
      doc.readFromBuffer("<r a='1' empty=''>x<A k='0'/><!-- c --><b/>y<a k='2'><a/></a></r>"));
  HXMLWElement root = *doc.getRootElement();
  EXPECT_EQ(root.getTagView(), "r");
  EXPECT_STREQ(root.findAttribute("a"), "1");
  ASSERT_NE(root.findAttribute("empty"), nullptr); // present but empty is not absent
  EXPECT_EQ(root.findAttribute("missing"), nullptr);
  EXPECT_EQ(root.getAttributeView("missing"), "");
  std::string_view view = "untouched";
  EXPECT_FALSE(root.getAttributeView("missing", view));
  EXPECT_EQ(view, "untouched");
  EXPECT_TRUE(root.getAttributeView("empty", view));
  EXPECT_TRUE(view.empty());

  std::vector<std::string> all, onlyA;
  for (HXMLWElement child : root.children())
    all.push_back(child.getTag() + child.getAttribute("k"));
  for (HXMLWElement child : root.children("a")) // ignores case, skips the grandchild
    onlyA.push_back(child.getTag() + child.getAttribute("k"));
  EXPECT_EQ(all, (std::vector<std::string>{"A0", "b", "a2"}));
  EXPECT_EQ(onlyA, (std::vector<std::string>{"A0", "a2"}));
  EXPECT_EQ(root.getChildren().size(), all.size());
  EXPECT_TRUE(root.children("none").empty());
  EXPECT_EQ(root.findChild("B"), root.getChild(1));

  // Several at once, in one walk: names exact, present but empty is not
  // absent, and the first of a repeated attribute is what findAttribute gives.
  static const char *const kNames[] = {"empty", "A", "a", "missing", "k"};
  const char *values[5];
  root.findAttributes(kNames, values);
  ASSERT_NE(values[0], nullptr);
  EXPECT_STREQ(values[0], "");
  EXPECT_EQ(values[1], nullptr);
  EXPECT_STREQ(values[2], "1");
  EXPECT_EQ(values[3], nullptr);
  EXPECT_EQ(values[4], nullptr);
  HXMLWInterface twice;
  if (twice.readFromBuffer("<r k='1' k='2'/>")) {
    twice.getRootElement()->findAttributes(kNames, values);
    EXPECT_STREQ(values[4], twice.getRootElement()->findAttribute("k"));
  }

  HXMLWElement null;
  null.findAttributes(kNames, values);
  EXPECT_TRUE(std::all_of(std::begin(values), std::end(values), [](const char *v) { return !v; }));
  EXPECT_TRUE(null.children().empty());
  EXPECT_EQ(null.findAttribute("a"), nullptr);
  EXPECT_EQ(null.getTagView(), "");
}

// A parse overwrites the text it reads (ends of names, line breaks in
// values), yet lines are those of the file as written.
TEST(Xml, LinesOfAFileParsedInPlace) {
  test::ScratchDir dir;
  dir.write("lines.xml", "<board\nname='a\nb'>\n<a\nx='1'/>\n\n<b\n/></board>");
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromFile(dir.file("lines.xml")));
  HXMLWElement root = *doc.getRootElement();
  EXPECT_EQ(root.getAttribute("name"), "a b");
  EXPECT_EQ(root.getChild(0).getLine(), 4);
  EXPECT_EQ(root.getChild(1).getLine(), 7);

  // ASCII text declared Latin-1 is parsed in the buffer first; the read
  // starts again from the file's text, and its lines stay right.
  dir.write("latin1.xml", "<?xml version='1.0' encoding='ISO-8859-1'?>\n<r\nv='1'>\n<a/>\n</c>\n");
  test::MessageRecorder sink;
  EXPECT_FALSE(doc.readFromFile(dir.file("latin1.xml")));
  ASSERT_EQ(sink.records.size(), 1u);
  EXPECT_EQ(sink.records[0].args[1], "5");
  EXPECT_EQ(doc.getErrorText().rfind("line 5, column ", 0), 0u) << doc.getErrorText();
}

// Documents borrow their buffers from their thread and give them back;
// no document may see another one's text, whichever thread reads or frees.
TEST(Xml, DocumentsAliveTogetherOnSeveralThreads) {
  test::ScratchDir dir;
  auto text = [](int n) {
    std::string t = "<board n='" + std::to_string(n) + "'>";
    for (int i = 0; i < 200 * (n + 1); ++i)
      t += "<pin name='p" + std::to_string(i) + "' file='" + std::to_string(n) + "'/>\n";
    return t + "</board>";
  };
  const int files = 6;
  for (int n = 0; n < files; ++n)
    dir.write(std::to_string(n) + ".xml", text(n));
  auto check = [](HXMLWInterface &doc, int n) {
    HXMLWElement *root = doc.getRootElement();
    if (!root || root->getAttribute("n") != std::to_string(n))
      return false;
    std::size_t pins = 0;
    for (HXMLWElement pin : root->children())
      if (pin.getAttributeView("file") != std::to_string(n))
        return false;
      else
        ++pins;
    return pins == 200u * (n + 1);
  };

  std::vector<std::unique_ptr<HXMLWInterface>> handedOver(4);
  std::vector<int> failures(4, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int round = 0; round < 20; ++round) {
        // Two documents at once, read largest and smallest alternately, so
        // that buffers are taken back, grown and shared out again.
        HXMLWInterface first, second;
        int a = (t + round) % files, b = files - 1 - a;
        failures[t] += !first.readFromFile(dir.file(std::to_string(a) + ".xml"));
        failures[t] += !second.readFromFile(dir.file(std::to_string(b) + ".xml"));
        failures[t] += !check(first, a) + !check(second, b);
        failures[t] += !first.readFromFile(dir.file(std::to_string(b) + ".xml"));
        failures[t] += !check(first, b) + !check(second, b);
      }
      handedOver[t].reset(new HXMLWInterface);
      handedOver[t]->readFromFile(dir.file(std::to_string(t) + ".xml"));
    });
  for (std::thread &thread : threads)
    thread.join();
  // The threads are gone; their documents are still whole, and are freed here.
  for (int t = 0; t < 4; ++t) {
    EXPECT_EQ(failures[t], 0) << "thread " << t;
    EXPECT_TRUE(check(*handedOver[t], t)) << "document of thread " << t;
  }
}

// A pipe has no end that the reader could count on: it is refused at once,
// with the reason, and never waited on.
TEST(Xml, PipeIsRefusedWithoutWaiting) {
  test::ScratchDir dir;
  const std::string fifo = dir.file("pipe.xml");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  test::MessageRecorder messages;
  HXMLWInterface doc;
  EXPECT_FALSE(doc.readFromFile(fifo));
  EXPECT_TRUE(doc.isReadFailure());
  EXPECT_EQ(doc.getErrorText(), "it is a named pipe, not a regular file");
  ASSERT_NE(messages.find("50-2"), nullptr);
  EXPECT_EQ(messages.find("50-2")->args,
            (std::vector<std::string>{fifo, "it is a named pipe, not a regular file"}));
}
