"""The get_* functions, the current board and the parameters, from Python."""
import unittest

import boardlib

SAMPLE = "kestrel-boards:sample_kit:1.0"
FALCON = "kestrel-boards:falcon_eval:1.0"


def board(name):
    return boardlib.get_boards(pattern=name)[0]


def names(objects):
    return [o.name for o in objects]


def component_names(objects):
    # Component names are board part names; the short name is the third field.
    return [o.name.split(":")[2] for o in objects]


class CatalogTest(unittest.TestCase):
    def test_boards_in_name_order(self):
        boards = boardlib.get_boards()
        self.assertIsInstance(boards, list)
        self.assertEqual(names(boards), sorted(names(boards)))
        for expected in (FALCON, "kestrel-boards:falcon_eval:1.1", "kestrel-boards:heron_adc:1.0",
                         "kestrel-boards:wren_io:1.0", SAMPLE):
            self.assertIn(expected, names(boards))

    def test_patterns(self):
        self.assertEqual(names(boardlib.get_boards(pattern="*falcon*")),
                         [FALCON, "kestrel-boards:falcon_eval:1.1"])
        self.assertEqual(names(boardlib.get_boards(pattern=["*wren*", "*heron*"])),
                         ["kestrel-boards:heron_adc:1.0", "kestrel-boards:wren_io:1.0"])
        self.assertEqual(boardlib.get_boards(pattern="*FALCON*", quiet=True), [])
        self.assertEqual(len(boardlib.get_boards(pattern="*FALCON*", nocase=True)), 2)
        self.assertEqual(names(boardlib.get_boards(pattern=r".*falcon_eval:1\.1", regexp=True)),
                         ["kestrel-boards:falcon_eval:1.1"])
        self.assertEqual(boardlib.get_boards("no_such_board", quiet=True), [])
        with self.assertRaises(boardlib.BoardError):
            boardlib.get_boards(pattern="(", regexp=True)


class OfObjectsTest(unittest.TestCase):
    def test_down_the_graph(self):
        sample = board(SAMPLE)
        components = boardlib.get_board_components(of_objects=sample)
        self.assertEqual(component_names(components),
                         ["led_2bits", "part0", "push_buttons_2bits", "sys_clock", "usb_uart"])
        self.assertEqual(component_names(boardlib.get_board_parts(of_objects=sample)), ["part0"])
        self.assertEqual(names(boardlib.get_board_jumpers(of_objects=[sample])), ["J1", "J2"])
        led = boardlib.get_board_component_interfaces(of_objects=components, pattern="led_2bits")
        ports = boardlib.get_board_interface_ports(of_objects=led)
        self.assertEqual(names(ports), ["led_2bits_tri_o"])
        self.assertEqual(names(boardlib.get_board_component_pins(of_objects=ports)), ["led0", "led1"])

    def test_back_up_the_graph(self):
        sample = board(SAMPLE)
        components = boardlib.get_board_components(of_objects=sample)
        self.assertEqual(boardlib.get_boards(of_objects=components), [sample])
        j1 = boardlib.get_board_jumpers(of_objects=sample, pattern="J1")
        self.assertEqual(boardlib.get_boards(of_objects=j1), [sample])
        pins = boardlib.get_board_component_pins(
            of_objects=boardlib.get_board_interface_ports(
                of_objects=boardlib.get_board_component_interfaces(of_objects=components, pattern="led_2bits")))
        self.assertEqual(component_names(boardlib.get_board_components(of_objects=pins)), ["part0"])
        both = boardlib.get_boards(of_objects=components + boardlib.get_board_components(of_objects=board(FALCON)))
        self.assertEqual(names(both), [SAMPLE, FALCON])  # in the order of the objects given

    def test_unrelated_classes_are_an_error(self):
        j1 = boardlib.get_board_jumpers(of_objects=board(SAMPLE), pattern="J1")[0]
        with self.assertRaises(boardlib.BoardError) as caught:
            boardlib.get_board_component_pins(of_objects=j1)
        self.assertIn("board_jumper", str(caught.exception))
        self.assertIn("board_component_pin", str(caught.exception))


class FilterTest(unittest.TestCase):
    def test_expressions(self):
        sample = board(SAMPLE)
        chips = boardlib.get_board_components(of_objects=sample, filter="TYPE == chip && IS_ENABLED == true")
        self.assertEqual(component_names(chips), ["led_2bits", "push_buttons_2bits", "sys_clock", "usb_uart"])
        self.assertEqual(boardlib.get_board_components(of_objects=sample, filter="type == chip"), chips)
        self.assertEqual(
            component_names(boardlib.get_board_components(
                of_objects=sample, filter='(SUB_TYPE =~ "*led*" || SUB_TYPE == uart) && TYPE != fpga')),
            ["led_2bits", "usb_uart"])
        self.assertEqual(names(boardlib.get_board_jumpers(of_objects=sample, filter="CURRENT_VALUE == 0")),
                         ["J2"])

    def test_bad_expression_names_the_position(self):
        with self.assertRaisesRegex(boardlib.BoardError, "character"):
            boardlib.get_board_components(of_objects=board(SAMPLE), filter="(TYPE == chip")


class CurrentBoardTest(unittest.TestCase):
    def tearDown(self):
        boardlib.current_board("")

    def test_without_current_board(self):
        boardlib.current_board("")
        self.assertIsNone(boardlib.current_board())
        with self.assertRaisesRegex(boardlib.BoardError, "current_board"):
            boardlib.get_board_components()

    def test_set_by_name_or_object(self):
        sample = board(SAMPLE)
        self.assertIs(boardlib.current_board(SAMPLE), sample)
        self.assertIs(boardlib.current_board(), sample)
        self.assertEqual(boardlib.get_board_components(), boardlib.get_board_components(of_objects=sample))
        self.assertEqual(component_names(boardlib.get_board_parts()), ["part0"])
        self.assertIn("led0", names(boardlib.get_board_part_pins()))
        falcon = board(FALCON)
        self.assertIs(boardlib.current_board(falcon), falcon)
        self.assertEqual(names(boardlib.get_board_jumpers()), ["J12", "J14", "J15"])
        with self.assertRaises(boardlib.BoardError):
            boardlib.current_board("kestrel-boards:no_such_board:1.0")
        self.assertIs(boardlib.current_board(), falcon)
        with self.assertRaises(boardlib.BoardError):
            boardlib.current_board(boardlib.get_board_jumpers()[0])


class ParamTest(unittest.TestCase):
    def test_get_set_and_report(self):
        self.assertEqual(boardlib.get_param("board.enableSchemaV2"), "true")
        old = boardlib.get_param("general.maxThreads")
        try:
            boardlib.set_param("general.maxThreads", 3)
            self.assertEqual(boardlib.get_param("general.maxThreads"), "3")
        finally:
            boardlib.set_param("general.maxThreads", old)
        report = boardlib.report_param("board.*")
        self.assertIsInstance(report, str)
        self.assertIn("board.enableSchemaV2", report)
        self.assertNotIn("general.maxThreads", report)
        self.assertIn("general.maxThreads", boardlib.report_param())

    def test_bad_names_and_values(self):
        with self.assertRaises(boardlib.BoardError):
            boardlib.get_param("no.such.parameter")
        with self.assertRaises(boardlib.BoardError):
            boardlib.set_param("no.such.parameter", "1")
        with self.assertRaises(boardlib.BoardError):
            boardlib.set_param("board.enableDiffCommand", "sometimes")
        self.assertEqual(boardlib.get_param("board.enableDiffCommand"), "false")
        boardlib.set_param("board.enableDiffCommand", True)
        self.assertEqual(boardlib.get_param("board.enableDiffCommand"), "true")
        boardlib.set_param("board.enableDiffCommand", False)


if __name__ == "__main__":
    unittest.main()
