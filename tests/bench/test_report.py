"""The report of the benchmarks: figures, names, raw results, ratios, and what is said about rows that are not there."""
import json
import pathlib
import re
import tempfile
import unittest
import xml.dom.minidom

from report import axis, figures, names, outcome, plots, publish, ratio_plot, raw, results, rows, svg, table

ROW = {"row": "walk", "title": "walk", "unit": "ms", "target": 1.0}


def declared(*entries):
    known = rows.Declarations()
    for entry in entries:
        known.add("files", entry)
    return known


def measured(known, **files):
    """What is read from raw files of such names and contents."""
    with tempfile.TemporaryDirectory() as folder:
        for name, content in files.items():
            (pathlib.Path(folder) / f"{name.replace('_', '-')}.json").write_text(json.dumps(content), encoding="utf-8")
        return raw.read_folder(pathlib.Path(folder), known)


def samples(row, contestant, *values, unit="ms", **more):
    return {"row": row, "contestant": contestant, "unit": unit, "samples": list(values), **more}


def compared(entries, *found):
    known = declared(*entries)
    return outcome.compare(known, measured(known, locks=list(found)))


class Figures(unittest.TestCase):
    def test_the_median_of_an_even_number_is_the_middle_of_the_two(self):
        self.assertEqual(figures.median([4, 1, 3, 2]), 2.5)

    def test_the_spread_is_what_lies_between_the_quartiles(self):
        self.assertEqual(figures.spread([90, 95, 100, 105, 1000]), 10.0)

    def test_the_spread_of_few_samples_is_all_that_lies_between_them(self):
        self.assertEqual(figures.spread([90, 100, 120]), 30.0)

    def test_there_is_no_spread_of_one_sample_or_around_zero(self):
        self.assertIsNone(figures.spread([5]))
        self.assertIsNone(figures.spread([0, 0, 0]))

    def test_units_convert_within_their_kind_only(self):
        self.assertAlmostEqual(figures.convert(2.5, "ms", "us"), 2500)
        with self.assertRaises(ValueError):
            figures.convert(1, "ms", "KiB")

    def test_figures_have_three_digits(self):
        texts = [figures.number(value) for value in (0, 0.01234, 0.928, 1.234, 45.67, 234.5, 12345.6)]
        self.assertEqual(texts, ["0", "0.0123", "0.928", "1.23", "45.7", "234", "12,346"])

    def test_a_ratio_never_looks_like_1_unless_it_is(self):
        texts = [figures.ratio_text(ratio) for ratio in (0.5, 1.0, 1.004, 0.9996, 0.0031, float("inf"), None)]
        self.assertEqual(texts, ["0.50", "1.00", "1.004", "0.9996", "0.003", "∞", "–"])


class Names(unittest.TestCase):
    def test_the_last_component_is_the_contestant(self):
        self.assertEqual(names.split("walk/zorvel"), ("walk", "zorvel", None))
        self.assertEqual(names.split("paths/join/std-path"), ("paths/join", "std-path", None))

    def test_what_the_library_appends_does_not_count(self):
        for suffix in ("iterations:1/manual_time", "real_time", "repeats:5", "min_time:0.500/process_time/real_time"):
            self.assertEqual(names.split(f"walk/zorvel/{suffix}"), ("walk", "zorvel", None))

    def test_a_number_is_the_x_of_a_growth(self):
        self.assertEqual(names.split("walk/zorvel/1000/real_time"), ("walk", "zorvel", 1000.0))
        self.assertEqual(names.split("walk/zorvel/files:1000"), ("walk", "zorvel", 1000.0))


class Raw(unittest.TestCase):
    def test_repetitions_are_samples_and_aggregates_are_not(self):
        entry = {"name": "walk/zorvel/real_time", "run_type": "iteration", "time_unit": "ns"}
        found = measured(declared(ROW), gb_files={"benchmarks": [
            {**entry, "real_time": 2e6, "cpu_time": 1}, {**entry, "real_time": 3e6, "cpu_time": 1},
            {**entry, "name": "walk/zorvel/real_time_mean", "run_type": "aggregate", "real_time": 9e9}]})
        self.assertEqual([(s.name, s.contestant, s.unit, s.samples) for s in found.rows()],
                         [("walk", "zorvel", "ms", [2.0, 3.0])])

    def test_a_benchmark_that_failed_is_complained_about(self):
        found = measured(declared(ROW), gb_files={"benchmarks": [
            {"name": "walk/zorvel", "run_type": "iteration", "error_occurred": True, "error_message": "no tree"}]})
        self.assertEqual((found.rows(), found.complaints), ([], ["walk/zorvel (linux): no tree"]))

    def test_a_rate_of_bytes_is_read_where_the_row_asks_for_one(self):
        entry = {"name": "scan/zorvel", "run_type": "iteration", "real_time": 1, "time_unit": "ns"}
        found = measured(declared({**ROW, "row": "scan", "unit": "GB/s"}), gb_paths={"benchmarks": [
            {**entry, "bytes_per_second": 2e9}]})
        self.assertEqual(found.rows()[0].samples, [2.0])

    def test_the_name_of_the_file_says_where_it_was_measured(self):
        found = measured(declared(ROW), windows_rows_files=[samples("walk", "zorvel", 1)], rows_files=[
            samples("walk", "zorvel", 2)])
        self.assertEqual({s.system: s.samples for s in found.rows()}, {"windows": [1.0], "linux": [2.0]})

    def test_a_row_that_is_declared_for_wine_only_is_wines(self):
        found = measured(declared({**ROW, "system": "windows"}), locks=[samples("walk", "zorvel", 1)])
        self.assertEqual(found.rows()[0].system, "windows")

    def test_a_file_that_is_no_result_is_complained_about(self):
        found = measured(declared(ROW), locks=[{"row": "walk"}])
        self.assertEqual((len(found.complaints), found.rows()), (1, []))


class Outcomes(unittest.TestCase):
    def test_the_ratio_is_ours_over_the_best_peers(self):
        (row,), _, complaints = compared([ROW], samples("walk", "zorvel", 3), samples("walk", "find", 4),
                                         samples("walk", "fts", 2000, unit="us"))
        self.assertEqual((row.ratio, [p.contestant for p in row.peers], row.met), (1.5, ["fts", "find"], False))
        self.assertEqual(complaints, [])

    def test_where_more_is_better_the_ratio_is_turned(self):
        found = [samples("walk", who, rate, unit="GB/s") for who, rate in (("zorvel", 4), ("find", 1), ("fts", 2))]
        (row,), _, _ = compared([{**ROW, "unit": "GB/s", "better": "higher"}], *found)
        self.assertEqual((row.ratio, row.peers[0].contestant, row.met), (0.5, "fts", True))

    def test_a_peer_that_does_nothing_makes_no_division_by_zero(self):
        self.assertEqual(outcome.turned_ratio(1, 0, "lower"), float("inf"))
        self.assertEqual(outcome.turned_ratio(1, 0, "higher"), 0.0)
        self.assertEqual(outcome.turned_ratio(0, 0, "higher"), 1.0)

    def test_the_floor_is_no_peer(self):
        entry = {**ROW, "target": None, "floor": "bare", "floor_target": 1.03}
        (row,), _, _ = compared([entry], samples("walk", "zorvel", 1.02), samples("walk", "bare", 1),
                                samples("walk", "find", 9))
        self.assertEqual(([p.contestant for p in row.peers], row.floor_ratio, row.met), (["find"], 1.02, True))

    def test_a_target_of_something_else_than_the_floor(self):
        entry = {**ROW, "target": 1.03, "floor": "bare", "base": "pause", "peers": []}
        (row,), _, complaints = compared([entry], samples("walk", "zorvel", 106), samples("walk", "bare", 104),
                                         samples("walk", "pause", 100))
        self.assertEqual((row.base_ratio, row.met, row.peers, complaints), (1.06, False, [], []))
        _, _, complaints = compared([entry], samples("walk", "zorvel", 106), samples("walk", "bare", 104))
        self.assertEqual(len(complaints), 1)

    def test_who_misses_the_target_may_still_be_at_the_floor(self):
        entry = {**ROW, "floor": "bare"}
        for ours, verdict in ((100, "yes"), (101, "floor"), (84, "yes"), (105, "floor"), (106, "NO")):
            (row,), _, _ = compared([entry], samples("walk", "zorvel", ours), samples("walk", "bare", 100),
                                    samples("walk", "find", 100))
            self.assertEqual(table.verdict(row), verdict, ours)
        self.assertIn("in 0 of 1 that have peers, at the floor in 0 more", table.summary([row]))

    def test_a_bar_shows_who_is_ahead_who_is_at_the_floor_and_who_is_behind(self):
        for ours, wanted in ((100, "c0"), (105, "c7"), (106, "c1")):
            (row,), _, _ = compared([{**ROW, "floor": "bare"}], samples("walk", "zorvel", ours),
                                    samples("walk", "bare", 100), samples("walk", "find", 100))
            self.assertEqual(ratio_plot.colour(row), wanted, ours)

    def test_a_target_in_the_rows_own_unit(self):
        entry = {**ROW, "target": None, "value_target": 0.9, "better": "higher", "peers": []}
        (row,), _, _ = compared([entry], samples("walk", "zorvel", 0.89))
        self.assertFalse(row.met)
        (row,), _, _ = compared([entry], samples("walk", "zorvel", 0.9))
        self.assertTrue(row.met)

    def test_without_peers_the_target_is_of_the_floor_and_without_a_floor_a_value(self):
        entry = {**ROW, "target": 1.03, "peers": []}
        (row,), _, _ = compared([{**entry, "floor": "bare"}], samples("walk", "zorvel", 102), samples("walk", "bare", 100))
        self.assertTrue(row.met)
        (row,), _, _ = compared([entry], samples("walk", "zorvel", 102))
        self.assertFalse(row.met)

    def test_a_row_that_nobody_names_is_complained_about(self):
        _, _, complaints = compared([], samples("stray", "zorvel", 1))
        self.assertEqual(complaints, ["measured, but no rows.json names it: stray (linux)"])

    def test_a_row_that_nobody_measured_is_complained_about_and_in_the_table(self):
        outcomes, _, complaints = compared([ROW])
        self.assertEqual(complaints, ["named, but not measured: walk (linux): zorvel, any peer"])
        self.assertEqual((outcomes[0].met, "| walk |" in table.markdown(outcomes)), (False, True))

    def test_a_peer_or_a_floor_that_is_named_and_missing_is_complained_about(self):
        _, _, complaints = compared([{**ROW, "floor": "bare", "peers": ["find", "fts"]}], samples("walk", "zorvel", 1),
                                    samples("walk", "find", 1))
        self.assertEqual(complaints, ["named, but not measured: walk (linux): bare, fts"])

    def test_a_unit_that_is_not_the_rows_is_complained_about(self):
        _, _, complaints = compared([ROW], samples("walk", "zorvel", 1, unit="KiB"), samples("walk", "find", 1))
        self.assertIn("walk/zorvel (linux): KiB is not ms", complaints)


class Written(unittest.TestCase):
    ENTRIES = [ROW, {**ROW, "row": "c-handover-median", "title": "8 contenders: handover, median"},
               {**ROW, "row": "c-fairness", "title": "8 contenders: fairness", "unit": "", "better": "higher"},
               {**ROW, "row": "lock", "floor": "bare", "base": "pause", "peers": []},
               {"growth": "walk", "title": "Walk", "x": "files", "unit": "ms"}]

    def outcomes(self):
        found = [samples(row, who, value, unit=unit) for row, unit in (("walk", "ms"), ("c-handover-median", "ms"),
                 ("c-fairness", "")) for who, value in (("zorvel", 1), ("find", 0))]
        found += [samples("lock", who, value) for who, value in (("zorvel", 3), ("bare", 2), ("pause", 1))]
        found += [{"growth": "walk", "contestant": who, "x": x, "unit": "ms", "samples": [x]}
                  for who in ("zorvel", "<find>") for x in (10, 1000)]
        return compared(self.ENTRIES, *found)

    def test_results_are_read_as_they_were_written(self):
        outcomes, growths, complaints = self.outcomes()
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "results.json"
            results.write(path, {"quick": True}, outcomes, growths, complaints)
            facts, again, grown, said = results.read(path)
        self.assertEqual((facts, again, said), ({"quick": True}, outcomes, complaints))
        self.assertEqual([[s.samples for s in series] for _, series in grown], [[s.samples for s in growths[0][1]]])

    def test_each_plot_is_a_whole_document_for_both_themes(self):
        outcomes, growths, _ = self.outcomes()
        drawn = {name: text for name, _, text in plots.drawn(outcomes, growths)}
        self.assertEqual(sorted(drawn), ["contention-c.svg", "growth-walk.svg", "ratios.svg"])
        for text in drawn.values():
            xml.dom.minidom.parseString(text)
            self.assertIn("prefers-color-scheme:dark", text)
            self.assertEqual(re.findall(r'(?:fill|stroke)="#', text), [])

    def test_a_title_stands_whole_and_inside_the_plot_however_long(self):
        title = "what is measured, and where and how, " * 4
        outcomes, _, _ = compared([{**ROW, "title": title}], samples("walk", "zorvel", 1), samples("walk", "find", 2))
        drawn = ratio_plot.draw(outcomes)
        place = re.search(rf'<text x="([0-9.]+)"[^>]*text-anchor="end">{title}<', drawn)
        self.assertGreaterEqual(float(place.group(1)), svg.width_of(title))

    def test_only_what_stands_between_the_markers_is_replaced(self):
        page = "a\n<!-- x -->\nold\n<!-- /x -->\nb\n"
        self.assertEqual(publish.between(page, "x", "new\n"), "a\n<!-- x -->\nnew\n<!-- /x -->\nb\n")
        with self.assertRaises(ValueError):
            publish.between(page, "y", "new\n")

    def test_names_at_the_ends_of_lines_keep_their_distance(self):
        self.assertEqual(axis.spaced([10, 11, 100], 16), [10, 26, 100])


if __name__ == "__main__":
    unittest.main()
