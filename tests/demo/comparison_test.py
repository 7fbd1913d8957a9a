"""That the demo's comparison sees what it has to, and nothing else."""

import copy
import json
import unittest

import demo_path  # noqa: F401
from comparison import count_values, find_differences
from ledger import Ledger, Verdict

SAMPLE = {
    "connection": {"id": "machine", "version": {"int": 393728}, "deviceType": "DESKTOP"},
    "sample": {
        "time": {"long": 1700000000000},
        "metrics": [{"name": "cpu", "value": {"double": 0.5}},
                    {"name": "disks", "instances": [{"name": "C:", "value": {"long": 9223372036854775807}}]},
                    {"name": "none"}],
        "sessions": [{"connected": True, "properties": [["a", "1"], ["b", None]]}],
    },
}
EXTENDED = {"metaData": [["a", "1"], ["b", "2"]], "sample": {"properties": [["a", "1"], ["b", "2"]]}}


class FindDifferencesTest(unittest.TestCase):
    """One change each, and the one line that tells it."""

    def differences(self, change, method="onDataCollected", sent=None):
        sent = sent or SAMPLE
        heard = copy.deepcopy(sent)
        change(heard)
        return find_differences(method, sent, heard)

    def test_equal_values_do_not_differ(self):
        self.assertEqual([], self.differences(lambda heard: None))

    def test_a_changed_value_is_told_with_its_path(self):
        def change(heard):
            heard["sample"]["metrics"][1]["instances"][0]["value"]["long"] -= 1

        self.assertEqual(['sample.metrics["disks"].instances["C:"].value: sent {"long": 9223372036854775807},'
                          ' arrived {"long": 9223372036854775806}'], self.differences(change))

    def test_a_missing_value_is_told(self):
        def change(heard):
            del heard["sample"]["metrics"][0]["value"]

        self.assertEqual(['sample.metrics["cpu"].value: sent {"double": 0.5}, did not arrive'],
                         self.differences(change))

    def test_a_surplus_value_is_told(self):
        def change(heard):
            heard["sample"]["metrics"][2]["value"] = None

        self.assertEqual(['sample.metrics["none"].value: nobody sent null'], self.differences(change))

    def test_a_missing_element_is_told(self):
        def change(heard):
            heard["sample"]["sessions"].clear()

        self.assertEqual(1, len(self.differences(change)))

    def test_a_surplus_element_is_told(self):
        def change(heard):
            heard["sample"]["metrics"].append({"name": "new"})

        self.assertEqual(['sample.metrics["new"]: nobody sent {"name": "new"}'], self.differences(change))

    def test_a_number_of_another_type_is_told(self):
        def change(heard):
            heard["sample"]["time"] = {"double": 1700000000000}

        self.assertEqual(1, len(self.differences(change)))

    def test_a_text_in_the_place_of_a_number_is_told(self):
        def change(heard):
            heard["sample"]["time"] = "1700000000000"

        self.assertEqual(1, len(self.differences(change)))

    def test_a_whole_number_as_a_double_in_the_place_of_a_long_is_told(self):
        def change(heard):
            heard["sample"]["time"] = {"long": 1700000000000.0}

        self.assertEqual(1, len(self.differences(change)))

    def test_a_truth_value_is_no_number(self):
        def change(heard):
            heard["sample"]["sessions"][0]["connected"] = 1

        self.assertEqual(1, len(self.differences(change)))

    def test_null_is_no_empty_text(self):
        def change(heard):
            heard["sample"]["sessions"][0]["properties"][1][1] = ""

        self.assertEqual(['sample.sessions[0].properties["b"][1]: sent null, arrived ""'], self.differences(change))

    def test_doubles_are_compared_bit_by_bit(self):
        cases = [("NaN", "NaN", True), ("NaN", 0.0, False), (0.0, -0.0, False), ("Infinity", "-Infinity", False),
                 (1, 1.0, True), (0.1, 0.1 + 2**-56, False), (5e-324, 0.0, False), (1e23, 1.0e23, True)]
        for sent, heard, is_equal in cases:
            with self.subTest(sent=sent, heard=heard):
                differences = find_differences("m", {"v": {"double": sent}}, {"v": {"double": heard}})
                self.assertEqual(is_equal, not differences)

    def test_maps_without_order_may_come_in_any(self):
        def change(heard):
            heard["metaData"].reverse()

        for method in ("onExtendedDataCollected", "onActionPerformed"):
            self.assertEqual([], self.differences(change, method, EXTENDED))
        self.assertNotEqual([], self.differences(change, "onDataCollected", EXTENDED))

    def test_what_has_an_order_has_to_keep_it(self):
        def change(heard):
            heard["sample"]["properties"].reverse()

        self.assertNotEqual([], self.differences(change, "onExtendedDataCollected", EXTENDED))

    def test_a_changed_value_in_a_map_without_order_is_told(self):
        def change(heard):
            heard["metaData"][0][1] = "2"

        self.assertEqual(['metaData["a"][1]: sent "1", arrived "2"'],
                         self.differences(change, "onExtendedDataCollected", EXTENDED))

    def test_numbers_texts_and_nulls_are_counted(self):
        self.assertEqual(15, count_values(SAMPLE))


class CallsInMemory:
    """In the place of the server's record."""

    def __init__(self):
        self.calls = []

    def read_calls(self):
        calls, self.calls = self.calls, []
        return json.loads(json.dumps(calls))


class LedgerTest(unittest.TestCase):
    """Items against calls."""

    def setUp(self):
        self.record = CallsInMemory()
        self.ledger = Ledger(self.record)

    def send(self, value, result="0x00000000", method="onUserLogoff"):
        return self.ledger.take_sent({"name": "item", "type": 2, "method": method, "result": result,
                                      "milliseconds": 1.0, "arguments": {"value": {"long": value}}}).outcome

    def hear(self, *values):
        self.record.calls += [{"method": "onUserLogoff", "arguments": {"value": {"long": v}}} for v in values]

    def test_an_item_that_was_heard_has_arrived(self):
        self.hear(1)

        self.assertEqual(Verdict.ARRIVED, self.send(1))
        self.ledger.close(1)
        self.assertEqual([], self.ledger.problems)

    def test_an_item_that_nobody_heard_is_lost(self):
        self.assertEqual(Verdict.LOST, self.send(1))
        self.assertEqual(1, self.ledger.lost())

    def test_a_call_that_nobody_sent_is_a_problem_and_spoils_no_other(self):
        self.hear(7, 1)

        self.assertEqual(Verdict.ARRIVED, self.send(1))
        self.ledger.close(1)
        self.assertEqual(["1 call(s) of onUserLogoff that no item of the host's stands for"], self.ledger.problems)

    def test_a_call_after_the_last_item_is_a_problem(self):
        self.hear(1)
        self.send(1)
        self.hear(1)

        self.ledger.close(1)

        self.assertEqual(1, len(self.ledger.problems))

    def test_a_refused_item_that_was_heard_before_the_call_broke_leaves_no_surplus(self):
        self.hear(1)

        self.assertEqual(Verdict.REFUSED, self.send(1, "0x800713AB"))
        self.ledger.close(1)
        self.assertEqual([], self.ledger.problems)

    def test_an_item_that_the_library_keeps_is_not_lost(self):
        self.assertEqual(Verdict.KEPT, self.send(1, method=None))
        self.assertEqual(0, self.ledger.lost())

    def test_items_that_were_not_told_of_are_a_problem(self):
        self.hear(1)
        self.send(1)

        self.ledger.close(2)

        self.assertEqual(["the host sent 2 items and told of 1"], self.ledger.problems)


if __name__ == "__main__":
    unittest.main()
