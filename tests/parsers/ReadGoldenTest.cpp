// Each test board read as the file entry reads it, and compared whole with
// its golden file in tests/data/golden/reads: the result, the messages
// queued (and whether each fails the read) and sent, what the read gathered
// of the interfaces and preferred IPs, and every field of the board, also
// of a board whose read failed. tests/data/README.md tells what each board
// is made to show.
#include "BoardDump.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HXMLWInterface.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>

namespace {

struct Read {
  const char *name; // of the golden file
  const char *dir;
  bool send;              // tell the queued messages, and apply the checks that need it
  const char *param = ""; // a parameter set for the read, "NAME=VALUE"
};

const char kStrict[] = "board.enable2020Checks=true"; // the strict checks, asked for

const Read kReads[] = {
    {"minimal", "minimal", false},
    {"full", "full", false},
    {"components", "components", false},
    {"components_rule_no_type", "components_rules/no_type", false},
    {"components_rule_no_sub_type", "components_rules/no_sub_type", false},
    {"components_rule_bad_sub_type", "components_rules/bad_sub_type", false},
    {"components_rule_bad_connected_to", "components_rules/bad_connected_to", false},
    {"malformed_truncated", "malformed/truncated", false},
    {"malformed_notxml", "malformed/notxml", false},
    {"malformed_empty", "malformed/empty", false},
    {"malformed_unclosed", "malformed/unclosed", false},
    {"missing_vlnv", "missing_vlnv", false},
    {"missing_vlnv_sent", "missing_vlnv", true},
    {"no_revisions_child", "no_revisions_child", false},
    {"no_revisions_child_sent", "no_revisions_child", true},
    {"bad_component_type", "bad_component_type", true},
    {"dup_pin_index", "dup_pin_index", false},
    {"dup_pin_index_sent", "dup_pin_index", true},
    {"dup_pin_index_strict", "dup_pin_index_strict", false},
    {"dup_pin_lenient", "dup_pin_lenient", true},
    {"dup_component", "dup_component", true},
    {"dup_component_strict", "dup_component", true, kStrict},
    {"pin_no_loc", "pin_no_loc", false},
    {"pin_no_index", "pin_no_index", false},
    {"bad_design_constrs", "bad_design_constrs", false},
    {"missing_pin_file", "missing_pin_file", false},
    {"part_mismatch", "part_mismatch", false},
    {"part_mismatch_sent", "part_mismatch", true},
    {"interfaces_basic", "interfaces_basic", false},
    {"interfaces_basic_strict", "interfaces_basic", false, kStrict},
    {"interfaces_findings", "interfaces_findings", false},
    {"interfaces_bad_port", "interfaces_bad_port", false},
    {"interfaces_strict", "interfaces_strict", true},
    {"interfaces_strict_bad", "interfaces_strict_bad", false},
    {"interfaces_strict_bad_sent", "interfaces_strict_bad", true},
    {"interfaces_rules", "interfaces_rules", true},
    {"interfaces_rule_unnamed", "interfaces_rules/unnamed", false},
    {"interfaces_rule_no_mode", "interfaces_rules/no_mode", false},
    {"interfaces_rule_monitor", "interfaces_rules/monitor", false},
    {"interfaces_rule_ports", "interfaces_rules/ports", false},
    {"interfaces_rule_no_dir", "interfaces_rules/no_dir", false},
    {"interfaces_rule_input", "interfaces_rules/input", false},
    {"interfaces_rule_one_bit", "interfaces_rules/one_bit", false},
    {"interfaces_rule_ips", "interfaces_rules/ips", false},
    {"interfaces_rule_ip_order", "interfaces_rules/ip_order", false},
    {"interfaces_rule_strict_port_lenient", "interfaces_rules/strict_port", false},
    {"interfaces_rule_strict_port", "interfaces_rules/strict_port", true, kStrict},
    {"interfaces_rule_strict_ip_order_lenient", "interfaces_rules/strict_ip_order", false},
    {"interfaces_rule_strict_ip_order", "interfaces_rules/strict_ip_order", true, kStrict},
    {"interfaces_rule_strict_mode_order_lenient", "interfaces_rules/strict_mode_order", false},
    {"interfaces_rule_strict_mode_order", "interfaces_rules/strict_mode_order", true, kStrict},
    {"interfaces_enablement", "interfaces_enablement", false},
    {"connections_basic", "connections_basic", false},
    {"connections_width", "connections_width", false},
    {"connections_missing_index", "connections_missing_index", false},
    {"connections_too_wide", "connections_too_wide", false},
    {"connections_bad_delay", "connections_bad_delay", false},
    {"connections_bad_net", "connections_bad_net", false},
    {"connections_rules", "connections_rules", false},
    {"connections_index_text", "connections_index_text", false},
    {"connections_index_max", "connections_index_max", false},
    {"connections_index_text_strict", "connections_index_text", true, kStrict},
    {"presets_basic", "presets_basic", false},
    {"presets_missing", "presets_missing", false},
    {"presets_malformed", "presets_malformed", false},
    {"presets_malformed_sent", "presets_malformed", true},
    {"presets_assoc", "presets_assoc", false},
    {"presets_assoc_findings", "presets_assoc_findings", false},
    {"presets_assoc_unknown", "presets_assoc_unknown", true},
    {"presets_assoc_case", "presets_assoc_case", true},
    {"presets_assoc_daughter", "presets_assoc_daughter", false},
    {"presets_assoc_old_schema", "presets_assoc_old_schema", false},
    {"presets_assoc_old_schema_sent", "presets_assoc_old_schema", true},
    {"power_network", "power_network", false},
    {"power_network_stub", "power_network", false, "board.dataProps.stubData=true"},
    {"power_names", "power_names", false},
    {"power_phases", "power_phases", false},
    {"power_bad_phases", "power_bad_numbers/phases", false},
    {"power_bad_source", "power_bad_numbers/source", false},
    {"dataprops_conditions", "dataprops_conditions", false},
    // Validating reads: what the DTDs find, and on which line.
    {"dtd_lines", "dtd_lines", true},
    {"dtd_two_meanings", "dtd_two_meanings", true},
    {"dtd_board_faults", "dtd_board_faults", true},
    {"dtd_pin_faults", "dtd_pin_faults", true},
    {"dtd_preset_faults", "dtd_preset_faults", true},
    {"dtd_split_root", "dtd_split_root", true},
    {"dtd_indented_doctype", "dtd_indented_doctype", true},
    {"dtd_crlf", "dtd_crlf", true},
    {"dtd_many_findings", "dtd_many_findings", true},
    {"dtd_hundred_findings", "dtd_hundred_findings", true},
};

// Failures name the golden file.
void PrintTo(const Read &read, std::ostream *os) { *os << read.name; }

std::string join(const std::vector<std::string> &parts) {
  std::string out;
  for (const std::string &part : parts)
    out += (out.empty() ? "" : " | ") + part;
  return out;
}

std::string readAndDump(const Read &read) {
  std::unique_ptr<test::ParamScope> param;
  if (*read.param) {
    const std::string setting = read.param;
    param = std::make_unique<test::ParamScope>(setting.substr(0, setting.find('=')),
                                               setting.substr(setting.find('=') + 1));
  }
  const std::string file = test::dataPath(std::string(read.dir) + "/board.xml");
  test::MessageRecorder sent;
  HBOBoard board;
  // The board knows the schema version of its file before the reader runs,
  // as the file entry sees to.
  HXMLWInterface doc;
  if (doc.readFromFile(file, false) && doc.getRootElement())
    board.setBoardSchemaVersion(doc.getRootElement()->getAttribute("schema_version"));
  HBOBoardParser parser;
  HBOParsedVLNVs parsed;
  const bool ok = parser.parseFile(file, &board, read.send, "", &parsed);

  std::ostringstream out;
  out << "result: " << (ok ? "read" : "failed") << "\nqueued:\n";
  for (const auto &[message, told] : parser.getMessages())
    out << "  " << (told ? "told " : "fails ") << ComMsgMgr::severityName(message.getSeverity())
        << " " << message.getId() << " " << join(message.getArgs()) << "\n";
  out << "sent:\n";
  for (const ComMsgRecord &record : sent.records)
    out << "  " << record.line << "\n";
  out << "parsed:\n";
  for (const HBOParsedInterface &intf : parsed.interfaces) {
    const std::set<std::string> ports(intf.logicalPorts.begin(), intf.logicalPorts.end());
    out << "  interface " << intf.type << " " << join({ports.begin(), ports.end()}) << "\n";
  }
  const std::set<std::string> ips(parsed.preferredIpVlnvs.begin(), parsed.preferredIpVlnvs.end());
  out << "  preferred_ips " << join({ips.begin(), ips.end()}) << "\n" << dumpBoard(board);

  return out.str();
}

class ReadGolden : public ::testing::TestWithParam<Read> {};

TEST_P(ReadGolden, MatchesItsGoldenFile) {
  test::expectGolden("reads/" + std::string(GetParam().name) + ".txt", readAndDump(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Boards, ReadGolden, ::testing::ValuesIn(kReads),
                         [](const ::testing::TestParamInfo<Read> &info) {
                           return std::string(info.param.name);
                         });

} // namespace
