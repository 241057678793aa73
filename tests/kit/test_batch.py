"""Batches: what they make, keep, make again and refuse, and the joining of results."""

import array
import json
import math
import os
import tarfile
import unittest

import _Orvane

from orvanekit import batch, coefficients, load, make_set, map_picture, save, write_image
from test_command_line import CommandLineTest

GAUSSIANS = {"do": "gaussians", "given": [[1.0, 2.0, 0.3, 2.0], [2, 4, 0.5, -1]], "seed": 5,
             "samples": 40, "bands": 6}


def field(name, **more):
    return dict(GAUSSIANS, id=name, **more)


class BatchTest(CommandLineTest):
    def write_jobs(self, *lines):
        self.write("jobs.jsonl", "".join(
            (line if isinstance(line, str) else json.dumps(line)) + "\n" for line in lines))

    def work(self, counts, options=""):
        """Do the jobs; expects how many are made, are there already, fail. Returns the errors."""
        status, output, errors = self.run_line("batch jobs.jsonl --out out " + options)
        self.assertEqual(output, "%d made, %d there already, %d failed\n" % counts, errors)
        self.assertEqual(status, 1 if counts[2] else 0)
        return errors

    def contents(self):
        return dict((name, self.read("out/" + name)) for name in os.listdir("out"))

    def refused(self, line):
        """The errors of a command line that must fail."""
        status, output, errors = self.run_line(line)
        self.assertEqual((status, output), (1, ""), errors)
        return errors


class OperationsTest(BatchTest):
    def test_jobs_do_what_the_command_line_and_the_module_do(self):
        write_image("a.pfm", 12, 12, [math.sin(i) for i in range(144)])
        self.write("p.csv", "10 20 1\n50 60 2\n70 80 -1\n")
        save("a.json", make_set([1.0, 2, 3, 4]))
        save("b.json", make_set([4.0, 3, 2, 1]))
        cases = [  # a job, and the commands whose last output it has to be
            ({"do": "project", "given": "a.pfm", "bands": 3}, ["project a.pfm x.json --bands 3"]),
            ({"do": "fit", "given": "p.csv", "bands": 2, "degrees": True},
             ["fit p.csv x.json --bands 2 --degrees"]),
            ({"do": "combine", "given": ["a.json", "b.json"], "blend": 0.25},
             ["combine a.json b.json x.json --blend 0.25"]),
            ({"do": "filter", "given": "a.json", "heat": 0.5, "then": [
                {"do": "rotate", "axis": [1, 2, 3], "angle": 40},
                {"do": "combine", "given": ["b.json"], "difference": True}]},
             ["filter a.json y.json --heat 0.5", "rotate y.json z.json --axis 1 2 3 --angle 40",
              "combine z.json b.json x.json --difference"])]
        self.write_jobs(*[dict(job, id="j%d" % number) for number, (job, _) in enumerate(cases)])
        self.work((len(cases), 0, 0))
        for number, (_, lines) in enumerate(cases):
            for line in lines:
                self.run_well(line)
            self.assertEqual(coefficients(load("out/j%d.json" % number)),
                             coefficients(load("x.json")), lines)

    def test_gaussians_are_the_modules(self):
        self.write_jobs(field("sum"), {"id": "sampled", "do": "importance", "seed": 3, "samples": 8,
                                  "around": 50, "steps": 512, "given": [[1, 2, 0.3, 0.5]]})
        self.work((2, 0, 0))
        builder = _Orvane.SHBuilder()
        builder.GenerateLookUpTables(1024)
        builder.GenerateSphericalSamples(5, 40)
        total = builder.ScaleSH(builder.CreateGaussSH(6, 0.3, 1.0, 2.0), 2.0)
        builder.SubtractSH(total, builder.CreateGaussSH(6, 0.5, 2.0, 4.0))
        self.assertEqual(coefficients(load("out/sum.json")), coefficients(total))
        builder.GenerateLookUpTables(512)
        builder.GeneratePDFSamples(3, 8, 50)
        sampled = builder.ScaleSH(builder.CreateImportanceSampledGaussSH(1.0, 2.0, 0.3), 0.5)
        self.assertEqual(coefficients(load("out/sampled.json")), coefficients(sampled))

    def test_slices_make_the_picture(self):
        save("a.json", make_set([math.sin(i * i) for i in range(25)]))
        self.write_jobs(*[{"id": "s%d" % (8 - i), "do": "render", "given": "a.json", "width": 36,
                      "height": 18, "slices": 3, "slice": i} for i in range(9)])
        self.work((9, 0, 0))
        self.run_well("join out picture.png")
        self.assertEqual(self.read("picture.png"), map_picture(load("a.json"), 36, 18))


class RepeatTest(BatchTest):
    NAME = "\xc3\xa9.json"

    def test_only_what_is_not_there_is_made(self):
        save(self.NAME, make_set([1.0]))
        picture = {"id": "p", "do": "render", "given": self.NAME, "width": 4}
        self.write_jobs(field("one"), field("two"), picture)
        self.work((3, 0, 0))
        first = self.contents()
        times = os.stat("out/one.json").st_mtime
        self.work((0, 3, 0))
        self.assertEqual(os.stat("out/one.json").st_mtime, times)
        for name in ("one.json", "p.png"):
            for alter in (lambda text: text[:-9], lambda text: "",
                          lambda text: text[:-5] + chr(ord(text[-5]) ^ 1) + text[-4:],
                          lambda text: text.replace('"id"', '"ID"')):
                self.write("out/" + name, alter(first[name]))
                self.assertIn("out: %s: damaged: " % name.split(".")[0],
                              self.refused("join out all.tar"))
                self.work((1, 2, 0))
                self.assertEqual(self.contents(), first)
        # Another text of a job, and other contents of a file that one reads.
        self.write_jobs(field("one"), field("two", steps=512), picture)
        self.work((1, 2, 0))
        save(self.NAME, make_set([2.0]))
        self.work((1, 2, 0))
        self.assertEqual(self.contents()["one.json"], first["one.json"])

    def test_parts_do_each_job_once_whatever_the_order(self):
        lines = [field("f%d" % number, seed=number % 3) for number in range(7)]
        self.write_jobs(*lines)
        self.work((7, 0, 0))
        whole = self.contents()
        os.rename("out", "whole")
        for part, count in ((3, 2), (1, 3), (2, 2)):
            self.work((count, 0, 0), "--part %d/3" % part)
        self.assertEqual(self.contents(), whole)

    def test_a_failed_job_leaves_its_reason_and_the_others_go_on(self):
        save("a.json", make_set([1.0]))
        self.write_jobs({"id": "bad", "do": "filter", "given": "later.json", "hann": True},
                   {"id": "odd", "do": "render", "given": "a.json", "width": 5, "slices": 2},
                   field("good"))
        errors = self.work((1, 0, 2))
        self.assertIn("bad: IOError: [Errno 2]", errors)
        self.assertIn("part 0 of 2 x 2 of 5 x 2 pixels", self.contents()["odd.error"])
        self.assertIn("out: bad: failed", self.refused("join out all.tar"))
        save("later.json", make_set([1.0]))
        self.work((1, 1, 1))
        self.assertEqual(sorted(name for name in self.contents() if "bad" in name), ["bad.json"])

    def test_what_cannot_be_written_leaves_the_old_result(self):
        self.write_jobs(field("one"))
        self.work((1, 0, 0))
        old = self.contents()
        self.write_jobs(field("one", steps=64))
        whole = batch.write_whole

        def full(opened):
            opened.write("{")
            raise IOError(28, "No space left on device")
        self.replace(batch, "write_whole", lambda path, contents: whole(
            path, full if path.endswith(".json") else contents))
        self.work((0, 0, 1))
        self.assertEqual(self.contents()["one.json"], old["one.json"])
        self.assertIn("No space left", self.contents()["one.error"])
        self.assertFalse([name for name in self.contents() if name.startswith(".")])


class FingerprintTest(BatchTest):
    def set_fingerprint(self, value):
        self.replace(batch, "fingerprint", lambda: value)

    def test_another_machine_is_refused_unless_it_is_asked_for(self):
        self.write_jobs(field("one"), field("two"))
        self.set_fingerprint("1" * 64)
        self.work((1, 0, 0), "--part 1/2")
        self.set_fingerprint("2" * 64)
        self.assertIn("begun under the fingerprint 111111111111...",
                      self.refused("batch jobs.jsonl --out out"))
        self.work((1, 1, 0), "--any-fingerprint")
        self.assertEqual(self.refused("join out all.tar"), "out: two: of another fingerprint\n")
        self.assertFalse(os.path.exists("all.tar"))
        self.run_well("join out all.tar --any-fingerprint")
        self.set_fingerprint("1" * 64)
        self.work((1, 1, 0))
        self.run_well("join out all.tar")


class JoinTest(BatchTest):
    def test_results_in_the_order_of_the_jobs(self):
        self.write_jobs(*[field(name) for name in ("b", "c", "a")])
        self.work((3, 0, 0))
        self.run_well("join out all.tar")
        self.run_well("join out all.f32")
        with tarfile.open("all.tar") as archive:
            self.assertEqual(archive.getnames(), ["b.json", "c.json", "a.json"])
            self.assertEqual(archive.extractfile("c.json").read(), self.contents()["c.json"])
        self.assertEqual(array.array("f", self.read("all.f32")),
                         sum((coefficients(load("out/%s.json" % name)) for name in "bca"),
                             array.array("f")))

    def test_refusals_name_the_results(self):
        save("a.json", make_set([1.0]))
        reading = {"do": "filter", "given": "a.json", "hann": True}
        self.write_jobs(field("one"), field("two"), dict(reading, id="r1"), dict(reading, id="r2"))
        self.work((4, 0, 0))
        os.remove("out/two.json")
        os.rename("out/one.json", "out/two.json")
        self.assertEqual(self.refused("join out all.tar"),
                         "out: one: missing\nout: two: of another text of the job\n")
        save("a.json", make_set([2.0]))
        os.remove("out/r1.json")
        self.work((2, 0, 0), "--part 1/2")
        self.assertEqual(self.refused("join out all.tar").splitlines()[-1],
                         "out: r2: a.json had other contents than for r1")
        self.assertIn("ending '.zip'", self.refused("join out all.zip"))
        self.assertIn("two: of another text", self.refused("join out all.f32"))
        self.work((2, 2, 0))
        self.assertIn("not all slices", self.refused("join out all.png"))
        self.assertIn("has 1 x 1 coeff", self.refused("join out all.f32"))
        self.assertEqual([name for name in os.listdir(".") if name.startswith("all")], [])


class CheckTest(BatchTest):
    def test_line_and_column_of_what_is_wrong(self):
        save("a.json", make_set([1.0]))
        good = '{"id": "a", "do": "filter", "given": "a.json", "hann": true'
        cases = [  # a line, and what is wrong: columns and words
            ('{"id": "b" "do": 1}', [(12, "Expecting ',' delimiter")]),
            ('{"id": nope}', [(8, "Expecting a value")]),
            ('{"id": "b"} 1', [(13, "more after")]),
            ('[1]', [(1, "expected an object")]),
            ('{"do": "filter"}', [(1, 'no "id"'), (1, 'no "given": the name'),
                                  (1, "expected one of hann, lanczos")]),
            (good + '}', [(8, "the same as in line 1")]),
            (good.replace('"a"', '"A"') + '}', [(8, "the same as in line 1")]),
            (good.replace('"a"', '"b"') + ', "bands": 3}', [(62, "unknown field; filter has cap")]),
            (good.replace('"a"', '"b2"') + ', "cap": 1}', [(63, "hann was given too")]),
            (good.replace('"a"', '"b3"') + ', "do": "filter"}', [(63, "given twice")]),
            (good.replace('"a"', '"b4"').replace("true", "1") + '}',
             [(57, "expected true or false")]),
            (good.replace('"a"', '"b5"').replace("a.json", "no.json") + '}',
             [(39, "no such file")]),
            (good.replace('"a"', '"b6"') + ', "then": [{"do": "rotate", "axis": [1, 2], '
             '"angle": Infinity}, {"do": "project"}]}',
             [(97, "expected a list of 3"), (114, "expected a finite number"),
              (132, "expected one of combine, filter, render, rotate")]),
            ('{"id": "g", "do": "gaussians", "given": [[0, 1, 1, 1], [4, 0, 1, 1], [0, 0, 0, 1]], '
             '"seed": 1.5}', [(56, "theta from 0 to pi"), (70, "deviation above 0"),
                              (93, "whole number from 0 to 2147483647")]),
            ('{"id": "h", "do": "render", "given": "a.json", "then": [{"do": "render"}]}',
             [(57, "nothing can be done after render")])]
        cases += [('{"id": %s, "do": "render", "given": "a.json"}' % json.dumps(name),
                   [(8, "no name of a file")])
                  for name in ("", ".a", "a/b", "..", "a b", "-a", "nul", "com1.x", "a.",
                               u"\u00e9", 7, "x" * 101)]
        self.write_jobs(good + "}", "", *[line for line, _ in cases])
        errors = self.refused("batch jobs.jsonl --check")
        found = errors.splitlines()
        for number, (line, wrong) in enumerate(cases, 3):
            for column, words in wrong:
                start = "jobs.jsonl: line %d, column %d: " % (number, column)
                self.assertTrue([each for each in found if each.startswith(start)
                                 and words in each], (line, start, words))
        self.assertEqual(len(found), sum(len(wrong) for _, wrong in cases), errors)
        self.assertEqual(sorted(os.listdir(".")), ["a.json", "jobs.jsonl"])
        self.write_jobs(good + "}")
        self.assertEqual(self.run_well("batch jobs.jsonl --check"), "1 jobs\n")
        self.assertEqual(self.run_line("batch jobs.jsonl")[0], 1)


if __name__ == "__main__":
    unittest.main()
