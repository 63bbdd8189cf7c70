#!/usr/bin/env python3
"""The differential checks can fail: right answers pass, and each wrong one is noticed."""

import plistlib
import random
import unittest

import check_json
import check_property_lists
from json_documents import SEED, Documents
from probe import Complaint, check_all


class JSONCheckTest(unittest.TestCase):
    def test_right_answers_pass(self):
        for document, answer in [
            (b'{"small":1.0,"text":"\\u00e9","number":-0}', '{"small":1,"number":-0,"text":"é"}'),
            (b'{"leaves":[{"number":1e5},{}]}', '{"leaves":[{"number":100000},{}]}'),
            (b'{"small":2147483648}', "unsuitable"),
            (b'{"number":1e309}', "unsuitable"),
            (b"[]", "unsuitable"),
            (b'{"small":01}', "invalid"),
            (b'{"a":["\\ud83d"]}', "invalid"),
            (b'{"a":1,"a":"\\ud83d"}', "invalid"),
        ]:
            self.assertIsNone(check_json.complaint_about(document, answer))

    def test_wrong_answers_are_noticed(self):
        for document, answer in [
            (b'{"small":1}', '{"small":2}'),
            (b'{"small":1}', "{}"),
            (b'{"small":1}', "invalid"),
            (b'{"small":1}', "unsuitable"),
            (b'{"small":1,"small":2}', '{"small":2}'),
            (b'{"small":null}', '{"small":0}'),
            (b'{"small":1,"flag":true}', '{"small":1,"flag":true}'),
            (b'{"number":0.1}', '{"number":0.10000000000000002}'),
            (b'{"number":-0}', '{"number":0}'),
            (b'{"text":"\\u0000"}', '{"text":""}'),
            (b'{"numbers":[1,2]}', '{"numbers":[2,1]}'),
            (b'{"small":1.5}', '{"small":1}'),
            (b'{"small":1', '{"small":1}'),
            (b'{"small":1}]', '{"small":1}'),
            (b'{"number":1e309}', '{"number":1.7976931348623157e+308}'),
            (b'{"flag":1}', '{"flag":true}'),
        ]:
            with self.subTest(document=document, answer=answer):
                self.assertIsNotNone(check_json.complaint_about(document, answer))
                with self.assertRaises(Complaint):
                    check_all([document], [answer], check_json.complaint_about)

    def test_jq_must_read_the_same(self):
        lines = ['{"text":"\\u0000\\/é"}', '{"number":5e-324}']
        check_json.check_jq(lines)
        with self.assertRaises(Complaint):
            check_json.check_jq(['{"a":1}{"a":2}'])
        with self.assertRaises(Complaint):
            check_json.check_jq(['{"wide":100000000000000000000}', '{"a":1e1000}'])

    def test_all_kinds_of_documents_must_come(self):
        with self.assertRaises(Complaint):
            check_json.check_kinds(["invalid"] * check_json.COUNT)

    def test_the_documents_are_the_same_every_time(self):
        def first():
            source = Documents(random.Random(SEED))
            return [source.document() for _ in range(50)]

        self.assertEqual(first(), first())


class PropertyListCheckTest(unittest.TestCase):
    TREE = {"a": [True, 1, 1.5, "é", b"\1"], "b": {"c": -0.0}}

    def test_right_answers_pass(self):
        for fmt in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            document = plistlib.dumps(self.TREE, fmt=fmt)
            self.assertIsNone(check_property_lists.complaint_about(document, check_property_lists.described(self.TREE)))

    def test_wrong_answers_are_noticed(self):
        document = plistlib.dumps(self.TREE)
        wrong = [{}, {**self.TREE, "b": {"c": 0.0}}, {**self.TREE, "a": [1, 1, 1.5, "é", b"\1"]},
                 {**self.TREE, "a": [True, 1.0, 1.5, "é", b"\1"]}, {**self.TREE, "a": [True, 1, 1.5, b"\xc3\xa9", b"\1"]},
                 {"b": self.TREE["b"], "a": self.TREE["a"]}]
        for tree in wrong:
            with self.subTest(tree):
                line = check_property_lists.described(tree)
                self.assertIsNotNone(check_property_lists.complaint_about(document, line))
        self.assertIsNotNone(check_property_lists.complaint_about(document, "refused: not a property list"))


if __name__ == "__main__":
    unittest.main()
