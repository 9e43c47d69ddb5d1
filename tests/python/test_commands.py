"""The board functions from Python: how arguments and results travel between
Python and the commands, the Python types of property values, and the
errors. What the commands select and what the properties hold is checked
once, in the C++ tests."""
import ast
import os
import pathlib
import tempfile
import unittest

import boardlib

SAMPLE = "kestrel-boards:sample_kit:1.0"
FALCON = "kestrel-boards:falcon_eval:1.0"


def board(name):
    return boardlib.get_boards(pattern=name)[0]


def names(objects):
    return [o.name for o in objects]


def jumper(board_name, name):
    return boardlib.get_board_jumpers(of_objects=board(board_name), pattern=name)[0]


class StubTest(unittest.TestCase):
    """The type stubs beside the module describe exactly what it offers, and
    every function says what it does."""

    def test_stubs_name_what_the_module_has(self):
        stub = os.path.join(os.path.dirname(boardlib.__file__), "boardlib.pyi")
        with open(stub) as f:
            tree = ast.parse(f.read())
        stubbed = set()
        for node in tree.body:
            if isinstance(node, (ast.FunctionDef, ast.ClassDef)):
                stubbed.add(node.name)
            elif isinstance(node, ast.AnnAssign):
                stubbed.add(node.target.id)
        public = {n for n in dir(boardlib) if not n.startswith("_")} | {"__version__"}
        self.assertEqual(set(), public - stubbed, "in the module, not in the stubs")
        private = {n for n in stubbed if n.startswith("_") and n != "__version__"}
        self.assertEqual(set(), stubbed - public - private, "in the stubs, not in the module")
        for name in public - {"__version__"}:
            doc = getattr(boardlib, name).__doc__ or ""
            self.assertGreater(len(doc.split(":", 1)[-1].strip()), 10, name)


class QueryTest(unittest.TestCase):
    def tearDown(self):
        boardlib.current_board("")

    def test_keyword_arguments(self):
        boards = boardlib.get_boards()
        self.assertIsInstance(boards, list)
        self.assertEqual(names(boards), sorted(names(boards)))
        self.assertEqual(names(boardlib.get_boards(pattern=["*wren*", "*heron*"])),
                         ["kestrel-boards:heron_adc:1.0", "kestrel-boards:wren_io:1.0"])
        self.assertEqual(boardlib.get_boards(pattern="*FALCON*", quiet=True), [])
        self.assertEqual(len(boardlib.get_boards(pattern="*FALCON*", nocase=True)), 2)
        self.assertEqual(names(boardlib.get_boards(pattern=r".*falcon_eval:1\.1", regexp=True)),
                         ["kestrel-boards:falcon_eval:1.1"])
        sample = board(SAMPLE)
        self.assertEqual(names(boardlib.get_board_jumpers(of_objects=[sample], filter="CURRENT_VALUE == 0")),
                         ["J2"])
        # Objects of several boards, in the order given.
        components = boardlib.get_board_components(of_objects=[sample, board(FALCON)])
        self.assertEqual(names(boardlib.get_boards(of_objects=components)), [SAMPLE, FALCON])
        for bad in (lambda: boardlib.get_boards(pattern="(", regexp=True),
                    lambda: boardlib.get_board_components(of_objects=sample, filter="(TYPE == chip"),
                    lambda: boardlib.get_board_component_pins(of_objects=jumper(SAMPLE, "J1"))):
            with self.assertRaises(boardlib.BoardError):
                bad()
        with self.assertRaisesRegex(boardlib.BoardError, "the filter is too deep"):
            boardlib.get_board_components(of_objects=sample, filter="!" * 100000 + "TYPE == chip")

    def test_current_board(self):
        self.assertIsNone(boardlib.current_board())
        with self.assertRaisesRegex(boardlib.BoardError, "current_board"):
            boardlib.get_board_components()
        sample = board(SAMPLE)
        self.assertIs(boardlib.current_board(SAMPLE), sample)
        self.assertEqual(boardlib.get_board_components(), boardlib.get_board_components(of_objects=sample))
        falcon = board(FALCON)
        self.assertIs(boardlib.current_board(falcon), falcon)
        with self.assertRaises(boardlib.BoardError):
            boardlib.current_board("kestrel-boards:no_such_board:1.0")
        self.assertIs(boardlib.current_board(), falcon)

    def test_params(self):
        # Values of any Python type are passed as their text.
        old = boardlib.get_param("general.maxThreads")
        try:
            boardlib.set_param("general.maxThreads", 3)
            self.assertEqual(boardlib.get_param("general.maxThreads"), "3")
        finally:
            boardlib.set_param("general.maxThreads", old)
        boardlib.set_param("board.enableDiffCommand", True)
        self.assertEqual(boardlib.get_param("board.enableDiffCommand"), "true")
        boardlib.set_param("board.enableDiffCommand", False)
        with self.assertRaises(boardlib.BoardError):
            boardlib.set_param("board.enableDiffCommand", "sometimes")
        self.assertIn("board.enableSchemaV2", boardlib.report_param("board.*"))


class PropertyTest(unittest.TestCase):
    def test_value_types(self):
        sample = board(SAMPLE)
        self.assertEqual(boardlib.get_property("name", [sample]), SAMPLE)
        self.assertEqual(sample.get_property("JTAG_CHAINS"), ["chain1"])
        self.assertIs(jumper(SAMPLE, "J1").get_property("CURRENT_VALUE"), True)
        self.assertIs(jumper(SAMPLE, "J2").get_property("CURRENT_VALUE"), False)
        preference = boardlib.get_board_ip_preferences(of_objects=boardlib.get_board_component_interfaces(
            of_objects=boardlib.get_board_parts(of_objects=sample)))[0]
        self.assertIsInstance(preference.get_property("ORDER"), int)
        self.assertEqual(sample.get_property("PARAM.no_such_parameter"), "")
        # A property that holds objects gives objects.
        rule = boardlib.get_board_ip_presets(of_objects=board(FALCON), pattern="clk_gen_board_rule*")[0]
        interfaces = rule.get_property("BOARD_INTERFACES")
        self.assertTrue(interfaces)
        for intf in interfaces:
            self.assertIsInstance(intf, boardlib.board_part_interface)

    def test_names_and_reports(self):
        j2 = jumper(SAMPLE, "J2")
        self.assertEqual(j2.list_property(), ["CLASS", "CURRENT_VALUE", "DESCRIPTION", "NAME"])
        self.assertEqual(boardlib.list_property([j2]), j2.list_property())
        part0 = boardlib.get_board_parts(of_objects=board(SAMPLE))[0]
        self.assertNotIn("IS_ENABLED", part0.list_property())
        self.assertIn("IS_ENABLED", part0.list_property(all=True))
        report = boardlib.report_property(j2)
        self.assertIsInstance(report, str)
        self.assertIn(["CURRENT_VALUE", "bool", "false", "0"], [line.split() for line in report.splitlines()])

    def test_unknown_property(self):
        sample = board(SAMPLE)
        with self.assertRaisesRegex(boardlib.BoardError, "bogus"):
            sample.get_property("bogus")
        self.assertEqual(boardlib.get_property("bogus", sample, quiet=True), "")
        with self.assertRaises(boardlib.BoardError):
            boardlib.get_property("NAME", boardlib.get_board_jumpers(of_objects=sample))


class JumperTest(unittest.TestCase):
    """falcon_eval: J14 false enables the USB UART, true disables it."""

    def state(self):
        return (self.j14.get_property("CURRENT_VALUE"), self.uart.get_property("IS_ENABLED"))

    def setUp(self):
        self.j14 = jumper(FALCON, "J14")
        self.uart = boardlib.get_board_components(of_objects=board(FALCON), pattern="*:usb_uart:*")[0]
        self.assertEqual(self.state(), (False, "true"))

    def test_python_values(self):
        # Undo, redo and the refused changes themselves are checked in Tcl.
        for value in (True, "true", 1):
            with self.subTest(value=value):
                boardlib.set_property("CURRENT_VALUE", value, self.j14)
                self.assertEqual(self.state(), (True, "false"))
                self.assertIn("J14", boardlib.undo())
                self.assertEqual(self.state(), (False, "true"))
        for error, value in ((boardlib.BoardError, 2), (TypeError, 1.5)):
            with self.assertRaises(error):
                boardlib.set_property("CURRENT_VALUE", value, self.j14)
            self.assertEqual(self.state(), (False, "true"))
        with self.assertRaises(boardlib.BoardError):
            boardlib.undo()


class CompatibleConnectorTest(unittest.TestCase):
    def test_keywords_and_errors(self):
        falcon = board("kestrel-boards:falcon_eval:1.1")
        fmc, = boardlib.get_board_components(of_objects=falcon, pattern="*:fmc_lpc_connector:*")
        part, = boardlib.get_board_components(of_objects=falcon, pattern="*:part0:*")
        declared = ["kestrel-boards:plover_dac:fmc_lpc_plug:1.0",
                    "kestrel-boards:wren_io:fmc_connector:1.0"]
        self.assertEqual(names(boardlib.get_compatible_connectors(connector=fmc, latest=True)),
                         declared)
        self.assertEqual(names(boardlib.get_compatible_connectors([fmc])), declared)
        with self.assertRaises(boardlib.BoardError) as caught:
            boardlib.get_compatible_connectors(connector=part)
        self.assertIn("is not a connector", str(caught.exception))
        with self.assertRaises(TypeError):
            boardlib.get_compatible_connectors(latest=True)



class IntegratedBoardTest(unittest.TestCase):
    def tearDown(self):
        # The boards made here go with the project's user boards.
        boardlib.refresh_boards()

    def test_keywords_and_errors(self):
        leds = ("pmod_ja", "kestrel-boards:tern_pmod_led:pmod_plug:1.0")
        made = boardlib.create_integrated_board(
            base=board("kestrel-boards:falcon_eval:1.1"), connections=[leds], name="py_leds")
        self.assertEqual(names(boardlib.get_boards(pattern="*py_leds*")), [made.name])
        with self.assertRaises(boardlib.BoardError) as caught:
            boardlib.create_integrated_board(base=FALCON, connections=[("led_4bits", leds[1])])
        self.assertEqual(caught.exception.id, "49-127")
        with self.assertRaises(TypeError):
            boardlib.create_integrated_board(base=FALCON, connections=[("pmod_ja",)])


class DiagramTest(unittest.TestCase):
    """write_board_diagram's options: a board by name or object, a path
    object, jumpers given as booleans or texts, and what it refuses."""

    def test_options(self):
        with tempfile.TemporaryDirectory() as scratch:
            target = pathlib.Path(scratch) / "kit.svg"
            self.assertIsNone(boardlib.write_board_diagram(
                "kestrel-boards:sample_kit:1.0", target, jumpers={"J1": False, "j2": "true"}))
            svg = target.read_text()
            self.assertIn('class="connection disabled" data-name="part0_led_2bits_1"', svg)
            self.assertIn('class="connection disabled" data-name="part0_usb_uart_1"', svg)
            boardlib.write_board_diagram(board("kestrel-boards:sample_kit:1.0"), str(target))
            self.assertNotIn('class="connection disabled"', target.read_text())
            with self.assertRaisesRegex(boardlib.BoardError, "jumper setting"):
                boardlib.write_board_diagram("kestrel-boards:sample_kit:1.0", target,
                                             jumpers={"J7": True})
            with self.assertRaisesRegex(boardlib.BoardError, "no board is named"):
                boardlib.write_board_diagram("no:such:board:1.0", target)
            with self.assertRaisesRegex(boardlib.BoardError, "cannot write"):
                boardlib.write_board_diagram("kestrel-boards:sample_kit:1.0",
                                             os.path.join(scratch, "no", "kit.svg"))
            with self.assertRaises(TypeError):
                boardlib.write_board_diagram("kestrel-boards:sample_kit:1.0", target,
                                             jumpers=["J1"])
            self.assertEqual(os.listdir(scratch), ["kit.svg"])


class LegacyBoardTest(unittest.TestCase):
    def test_found_by_its_names_and_lifted(self):
        osprey = board("kestrel-boards:osprey_soc:1.1")
        part, = boardlib.get_board_components(of_objects=osprey, pattern="*:osprey_soc_part:*")
        self.assertEqual(names(boardlib.get_boards(pattern="*osprey*")), [osprey.name])
        self.assertEqual((part.get_property("SCHEMA_VERSION"),
                          part.get_property("MIGRATED_FROM_SCHEMA")), ("2.0", "1.1"))
        self.assertEqual(names(boardlib.get_board_component_interfaces(of_objects=osprey)),
                         ["ddr3_sdram", "fixed_io", "push_btns_2bits", "temp_sensor"])


if __name__ == "__main__":
    unittest.main()
