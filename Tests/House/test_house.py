"""Each rule of the house must be able to fail."""

import tempfile
import unittest
from pathlib import Path

import coverage
import house
import skipped_tests


class Tree(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path


class IncludeDirections(Tree):
    def test_downward_includes_pass(self):
        self.write("QuellinCore/Support/A.h", "")
        self.write("QuellinCore/Models/B.h", '#include "QuellinCore/Support/A.h"\n')
        self.write("quellin/main.cpp", '#include "QuellinCore/Models/B.h"\n')
        self.assertEqual(house.include_violations(self.root), [])

    def test_upward_include_is_named(self):
        self.write("QuellinCore/Models/B.h", "")
        self.write("QuellinCore/Support/A.h", '#include "QuellinCore/Models/B.h"\n')
        self.assertEqual(house.include_violations(self.root),
                         ["QuellinCore/Support/A.h: QuellinCore/Support must not include QuellinCore/Models/B.h"])

    def test_front_end_rooms_are_held_to_their_arrows(self):
        self.write("quellin/Presentation/A.h", "")
        self.write("quellin/Commands/B.cpp", '#include "quellin/Presentation/A.h"\n')
        self.assertEqual(house.include_violations(self.root), [])
        self.write("quellin/Terminal/C.h", '#include "quellin/Presentation/A.h"\n')
        self.assertEqual(house.include_violations(self.root),
                         ["quellin/Terminal/C.h: quellin/Terminal must not include quellin/Presentation/A.h"])

    def test_front_end_rooms_stand_in_an_order(self):
        below = set()
        for room, includes in house.FRONT_END.items():
            self.assertLessEqual({f"quellin/{name}" for name in includes}, below, room)
            below.add(room)

    def test_an_included_file_exists_or_is_configured(self):
        self.write("QuellinHelper/A.h", '#include "QuellinHelper/Version.h"\n')
        self.assertEqual(house.include_violations(self.root),
                         ["QuellinHelper/A.h: includes QuellinHelper/Version.h, which is not there"])
        self.write("QuellinHelper/Version.h.in", "")
        self.assertEqual(house.include_violations(self.root), [])

    def test_sessions_reach_the_process_service_only(self):
        self.write("QuellinCore/Services/ProcessActivityService.h", "")
        self.write("QuellinCore/Services/Other.h", "")
        self.write("QuellinCore/Sessions/R.cpp", '#include "QuellinCore/Services/ProcessActivityService.h"\n'
                                                 '#include "QuellinCore/Services/Other.h"\n')
        self.assertEqual(len(house.include_violations(self.root)), 1)

    def test_missing_file_is_named(self):
        self.write("QuellinCore/Support/A.h", '#include "QuellinCore/Support/Gone.h"\n')
        self.assertEqual(len(house.include_violations(self.root)), 1)


class Documentation(Tree):
    def install(self, *names):
        self.write("cmake/SharedLibrary.cmake", f"set(QUELLIN_INTERNAL {' '.join(names)})\n")

    def test_what_is_installed_is_documented(self):
        self.install("Linux", "Sessions/Database.h", "Sessions/Query.h")
        self.write("docs/Doxyfile", "EXCLUDE_PATTERNS = */Linux/* */Sessions/Database.h \\\n  */Sessions/Query.h\n")
        self.assertEqual(house.undocumented_installs(self.root), [])

    def test_a_difference_is_named_from_either_side(self):
        self.install("Linux", "Sessions/Database.h")
        self.write("docs/Doxyfile", "EXCLUDE_PATTERNS = */Linux/* */Sessions/Query.h\n")
        self.assertEqual([line.split(":")[0] for line in house.undocumented_installs(self.root)],
                         ["Sessions/Database.h", "Sessions/Query.h"])

    def test_a_room_counts_too(self):
        self.install("Linux", "Sessions/Database.h")
        self.write("docs/Doxyfile", "EXCLUDE_PATTERNS = */Sessions/Database.h\n")
        self.assertEqual(len(house.undocumented_installs(self.root)), 1)


class Threading(Tree):
    def found_in(self, name, text):
        self.write("cmake/SharedLibrary.cmake", "set(QUELLIN_INTERNAL Linux)\n")
        self.write(f"Sources/QuellinCore/{name}", text)
        return [line.split(": ")[1].split()[0] for line in house.silent_on_threads(self.root)]

    def test_a_class_that_says_nothing_is_named(self):
        text = "/// Thread-safe.\nclass First {\n};\n\n/// A list.\nclass Second final : public First {\n  int a;\n};\n"
        self.assertEqual(self.found_in("Support/Two.h", text), ["Second"])

    def test_one_says_it_above_or_within_or_by_the_main_executor(self):
        text = ("/// One thread at a time.\nclass First {\n};\n\nclass Second {\n  /// On any thread.\n  int a();\n};\n"
                "/// On the main\n/// executor only.\ntemplate <class T>\nclass Third {\n};\n")
        self.assertEqual(self.found_in("Support/Three.h", text), [])

    def test_internal_headers_may_be_silent(self):
        self.assertEqual(self.found_in("Platform/Linux/Silent.h", "class First {\n};\n"), [])


class Budget(Tree):
    def test_long_file_and_high_median_are_named(self):
        self.write("A.cpp", "x\n" * (house.MAX_LINES + 1))
        self.assertEqual(len(house.budget_violations(self.root)), 2)

    def test_short_files_pass(self):
        self.write("A.cpp", "x\n" * 100)
        self.assertEqual(house.budget_violations(self.root), [])


    def test_tests_have_the_budget_of_sources(self):
        for part in ("Sources", "Web", "Tests"):
            self.write(f"{part}/Room/A.cpp", "x\n" * 100)
        self.assertEqual(house.budgets_of_tree(self.root), [])
        self.write("Tests/Room/A.cpp", "x\n" * (house.MAX_LINES + 1))
        self.assertIn("Tests", house.budgets_of_tree(self.root)[0])

    def test_the_page_has_it_too_but_not_what_it_is_made_with(self):
        for suffix in (".js", ".mjs", ".css"):
            self.write(f"Web/long{suffix}", "x\n" * (house.MAX_LINES + 1))
            self.write(f"Web/node_modules/long{suffix}", "x\n" * (house.MAX_LINES + 1))
        self.assertEqual(len([line for line in house.budgets_of_tree(self.root) if "long" in line]), 3)

    def test_imports_of_the_page_follow_the_arrows(self):
        self.write("Web/src/plot/a.js", 'import { b } from "../common/b.js";\nimport "./c.js";\nimport uPlot from "uplot";\n')
        self.assertEqual(house.page_import_violations(self.root), [])
        self.write("Web/src/common/b.js", 'import { a } from "../plot/a.js";\n')
        self.assertEqual(len(house.page_import_violations(self.root)), 1)


class Registration(Tree):
    def test_every_case_must_be_registered(self):
        self.write("ATest.cpp", "TEST(ATest, One) {}\nTEST_P(BTest, Two) {}\n")
        registered = ["Core.ATest.One", "Core.Values/BTest.Two/(0.5, a/b.c)"]
        self.assertEqual(house.unregistered_tests(self.root, registered), [])
        self.assertEqual(len(house.unregistered_tests(self.root, registered[:1])), 1)

    def test_a_test_file_without_tests_is_named(self):
        self.write("ATest.cpp", "int x;\n")
        self.assertEqual(len(house.unregistered_tests(self.root, [])), 1)

    def test_a_file_in_no_build_is_named(self):
        path = self.write("AFuzzer.cpp", "")
        self.assertEqual(house.uncompiled_files([path], [{"file": str(path)}]), [])
        self.assertEqual(len(house.uncompiled_files([path], [])), 1)


class Skipped(Tree):
    def test_skipped_and_disabled_tests_are_found(self):
        report = self.write("r.xml", '<testsuite><testcase name="a" status="run"/>'
                                     '<testcase name="b" status="notrun"><skipped/></testcase>'
                                     '<testcase name="c" status="disabled"/></testsuite>')
        self.assertEqual(skipped_tests.left_out(report), ["b", "c"])


class Pictures(Tree):
    def test_a_picture_that_the_readme_shows_otherwise_is_found(self):
        self.write("docs/watch.txt", "12 W\n13 W\n")
        self.write("README.md", "```\n12 W\n13 W\n```\n")
        self.assertEqual(house.stale_pictures(self.root), [])
        self.write("README.md", "```\n12 W\n```\n")
        self.assertEqual(len(house.stale_pictures(self.root)), 1)


class Coverage(Tree):
    def report(self, *lines):
        source = self.write("A.cpp", "int f() {\n  if (g()) return 1;\n  if (h()) abort();\n}\n")
        return [{"current_working_directory": str(self.root), "files": [
            {"file": source.name, "lines": [self.line(*line) for line in lines]},
            {"file": "/elsewhere/B.cpp", "lines": [self.line(1, 0)]}]}]

    @staticmethod
    def line(number, count, branches=(), function="_Z1fv"):
        return {"line_number": number, "count": count, "function_name": function,
                "branches": [{"count": taken, "throw": thrown} for taken, thrown in branches]}

    def complete(self, *reports):
        return coverage.describe(coverage.merged([part for report in reports for part in report], [self.root]))[1]

    def test_lines_and_decisions_that_were_all_executed_pass(self):
        self.assertTrue(self.complete(self.report((1, 2), (2, 2, [(1, False), (1, False), (0, True)]))))

    def test_a_line_that_was_never_executed_fails(self):
        self.assertFalse(self.complete(self.report((1, 2), (2, 0))))

    def test_a_decision_that_went_one_way_only_fails(self):
        self.assertFalse(self.complete(self.report((2, 2, [(2, False), (0, False)]))))

    def test_objects_and_instances_of_a_template_add_up(self):
        ways = [(2, False), (0, False)]
        self.assertTrue(self.complete(self.report((2, 2, ways, "_ZN1AIiE1fEv")),
                                      self.report((2, 2, ways[::-1], "_ZN1AIlE1fEv"))))

    def test_the_way_that_ends_the_process_and_a_brace_count_for_nothing(self):
        self.assertTrue(self.complete(self.report((3, 2, [(2, False), (0, False)]), (4, 0))))

    def test_nothing_at_all_fails(self):
        self.assertFalse(self.complete())


if __name__ == "__main__":
    unittest.main()
