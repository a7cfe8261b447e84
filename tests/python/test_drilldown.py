"""The Python module drives an analysis as a macro does and gives plain Python values back."""

import os
import subprocess
import sys
import tempfile
import unittest

import drilldown

SOURCE = os.environ["DD_SOURCE_DIR"]
SAMPLE = os.path.join(SOURCE, "examples", "sample.csv")
CLI = os.environ["DD_CLI_PATH"]


class AnalysisTest(unittest.TestCase):
    def setUp(self):
        self.out = tempfile.TemporaryDirectory()
        self.analysis = drilldown.Analysis(SAMPLE, out=self.out.name)

    def tearDown(self):
        del self.analysis
        self.out.cleanup()

    def test_drilling_agrees_with_the_command_line(self):
        a = self.analysis
        a.set("Variables", "REGION SEX | AGE")
        self.assertEqual(a.get("Variables"), "REGION SEX | AGE")
        a.drill_down("REGION", "Bretagne")
        a.drill_down("SEX", 0)
        dumped = subprocess.run(
            [CLI, "dump", SAMPLE, "--down", "REGION SEX | AGE", "--drill", "REGION=Bretagne",
             "--drill", "SEX=@0"], capture_output=True, text=True, check=True)
        import json
        self.assertEqual(a.state()["DrillUps"], json.loads(dumped.stdout)["DrillUps"])
        condition = subprocess.run(
            [CLI, "dump", SAMPLE, "--down", "REGION SEX | AGE", "--drill", "REGION=Bretagne",
             "--drill", "SEX=@0", "--condition"], capture_output=True, text=True, check=True)
        self.assertEqual(a.condition(), condition.stdout.strip())
        a.drill_up(0)
        self.assertEqual(len(a.state()["DrillUps"]), 1)

    def test_documents_come_back_as_lists_and_dicts(self):
        a = self.analysis
        a.set("Variables", "REGION SEX | AGE")
        self.assertEqual(a.call("Descriptives"), "Statistiques descriptives")
        a.call("Histograms")
        documents = a.documents()
        self.assertEqual([d["kind"] for d in documents], ["table", "graph", "graph", "graph"])
        table = documents[0]
        self.assertEqual(table["rows"][0]["name"], "AGE")
        self.assertIsInstance(table["rows"][0]["cells"][0], float)
        self.assertEqual(documents[1]["type"], "histogram")

    def test_errors_are_python_errors_with_the_workbench_message(self):
        a = self.analysis
        with self.assertRaisesRegex(drilldown.MemberError, "DrilDown"):
            a.call("DrilDown")
        a.set("Variables", "SEX")
        with self.assertRaisesRegex(ValueError, "no category Nowhere"):
            a.drill_down("SEX", "Nowhere")
        with self.assertRaisesRegex(drilldown.DataError, "cannot open"):
            drilldown.Analysis(os.path.join(self.out.name, "none.csv"))


if __name__ == "__main__":
    unittest.main()
